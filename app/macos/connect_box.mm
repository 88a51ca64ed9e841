#include "app/macos/connect_box.h"

#include "platform/macos/foundation_text.h"

#import <CoreImage/CoreImage.h>

namespace lumbrine {

namespace {

constexpr CGFloat moduleSize = 6; // points

// Nil when the system cannot make one.
NSImage* qrCode(const std::string& text) {
    CIFilter* const filter = [CIFilter filterWithName:@"CIQRCodeGenerator"];
    [filter setValue:[shownText(text) dataUsingEncoding:NSUTF8StringEncoding] forKey:@"inputMessage"];
    CIImage* const small = filter.outputImage;
    if (small == nil) return nil;
    CIImage* const large = [small imageByApplyingTransform:CGAffineTransformMakeScale(moduleSize, moduleSize)];
    NSCIImageRep* const picture = [NSCIImageRep imageRepWithCIImage:large];
    NSImage* const image = [[NSImage alloc] initWithSize:picture.size];
    [image addRepresentation:picture];
    return image;
}

} // namespace

void showConnectBox(const ConnectText& text, NSWindow* window) {
    if (window.attachedSheet != nil) return;
    std::string lines;
    for (const std::string& address : text.addresses)
        lines += address + "\n";
    NSAlert* const box = [[NSAlert alloc] init];
    box.messageText = shownText(text.title);
    box.informativeText = shownText(lines + "\n" + text.advice);
    if (NSImage* const code = qrCode(text.link)) {
        NSImageView* const view = [NSImageView imageViewWithImage:code];
        view.frame = NSMakeRect(0, 0, code.size.width, code.size.height);
        view.accessibilityLabel = shownText(text.link);
        box.accessoryView = view;
    }
    [box addButtonWithTitle:shownText(text.closeButton)];
    [box beginSheetModalForWindow:window completionHandler:nil];
}

} // namespace lumbrine
