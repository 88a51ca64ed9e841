// The channel strips for screen readers: one element for each, with a name, a value and a place on the screen.
#pragma once

namespace lumbrine {

// Makes every StripsView have such elements. Further calls do nothing.
void describeStripsToScreenReaders();

} // namespace lumbrine
