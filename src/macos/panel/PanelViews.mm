#include "macos/panel/PanelViews.h"

namespace {

// Above the menu bar (24) and the status items (25), below menus that hang from them (101).
constexpr NSWindowLevel panelLevel = 27;

} // namespace

@implementation NimbarrowPanel

+ (instancetype)panel
{
    // That it never activates the program has to be known when the window is made: the window server does not
    // learn it later.
    NimbarrowPanel* const panel = [[self alloc] initWithContentRect:NSMakeRect(0, 0, 10, 10)
                                                          styleMask:NSWindowStyleMaskNonactivatingPanel
                                                            backing:NSBackingStoreBuffered
                                                              defer:NO];
    panel.opaque = NO;
    panel.backgroundColor = NSColor.clearColor;
    panel.hasShadow = NO;
    panel.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces
        | NSWindowCollectionBehaviorStationary | NSWindowCollectionBehaviorIgnoresCycle
        | NSWindowCollectionBehaviorFullScreenAuxiliary;
    panel.floatingPanel = YES;
    // Making it a floating panel sets a level of its own.
    panel.level = panelLevel;
    panel.hidesOnDeactivate = NO;
    panel.movable = NO;
    panel.movableByWindowBackground = NO;
    panel.releasedWhenClosed = NO;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
    // `ignoresMouseEvents` is left alone: until it is set, clicks on what is wholly transparent reach the
    // window below.
    return panel;
}

- (BOOL)canBecomeKeyWindow
{
    return self.allowsKey;
}

- (BOOL)canBecomeMainWindow
{
    return NO;
}

// The frame is used as it is asked for, over the menu bar too.
- (NSRect)constrainFrameRect:(NSRect)frame toScreen:(nullable NSScreen*)screen
{
    Q_UNUSED(screen);
    return frame;
}

@end

@implementation NimbarrowPanelView {
    std::function<void(QPointF)> _moved;
    std::function<void()> _gone;
    NSTrackingArea* _area;
}

- (void)onPointer:(std::function<void(QPointF)>)moved gone:(std::function<void()>)gone
{
    _moved = std::move(moved);
    _gone = std::move(gone);
}

- (BOOL)isFlipped
{
    return YES;
}

- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event
{
    Q_UNUSED(event);
    return YES;
}

- (void)updateTrackingAreas
{
    [super updateTrackingAreas];
    if (_area)
        [self removeTrackingArea:_area];
    _area = [[NSTrackingArea alloc] initWithRect:NSMakeRect(0, 0, 0, 0)
                                         options:NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved
                                         | NSTrackingActiveAlways | NSTrackingInVisibleRect
                                           owner:self
                                        userInfo:nil];
    [self addTrackingArea:_area];
}

- (void)mouseEntered:(NSEvent*)event
{
    [self tell:event];
}

- (void)mouseMoved:(NSEvent*)event
{
    [self tell:event];
}

- (void)mouseExited:(NSEvent*)event
{
    Q_UNUSED(event);
    if (_gone)
        _gone();
}

- (void)tell:(NSEvent*)event
{
    const auto place = [self convertPoint:event.locationInWindow fromView:nil];
    if (_moved)
        _moved(QPointF(place.x, place.y));
}

@end
