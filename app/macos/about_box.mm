#include "app/macos/about_box.h"

#include "platform/macos/foundation_text.h"

namespace lumbrine {

void showAboutBox(const AboutText& text, NSWindow* window) {
    if (window.attachedSheet != nil) return;
    NSAlert* const box = [[NSAlert alloc] init];
    box.messageText = shownText(text.heading);
    box.informativeText = shownText(text.body);
    [box addButtonWithTitle:shownText(text.closeButton)];
    [box addButtonWithTitle:shownText(text.copyButton)];
    NSString* const report = shownText(text.report);
    [box beginSheetModalForWindow:window
                completionHandler:^(NSModalResponse response) {
                  if (response != NSAlertSecondButtonReturn) return;
                  [NSPasteboard.generalPasteboard clearContents];
                  [NSPasteboard.generalPasteboard setString:report forType:NSPasteboardTypeString];
                }];
}

} // namespace lumbrine
