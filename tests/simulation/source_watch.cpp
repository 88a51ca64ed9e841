#include "tests/simulation/source_watch.h"

namespace lumbrine::simulation {

SourceWatch::SourceWatch(Runtime& rt, const ReceiverState& receiverState)
    : runtime(rt), state(receiverState), timer(rt.repeatOnMain(seconds(0.2), [this] { look(); })) {}

void SourceWatch::look() {
    const PublishedState& published = state.published;
    const Names& comments = state.session.trackMapComments;
    if (!told.empty()) {
        const ToldTracks& last = told.back();
        if (last.full == published.trackMapFull && last.map == published.trackMap &&
            last.colors == published.trackMapColors && last.comments == comments)
            return;
    }
    told.push_back({runtime.now(), published.trackMap, published.trackMapFull, published.trackMapColors, comments});
}

} // namespace lumbrine::simulation
