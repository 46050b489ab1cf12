#pragma once

#include <QPointF>

#include <AppKit/AppKit.h>
#include <functional>

/// A borderless panel that stands above everything on every desktop, and takes the keyboard only while it is
/// allowed to.
@interface NimbarrowPanel : NSPanel
@property BOOL allowsKey;
/// Not on the screen yet.
+ (instancetype)panel;
@end

/// Fills the panel and tells where the pointer is, also while another program is the active one. Its y axis
/// points down.
@interface NimbarrowPanelView : NSView
/// The place of the pointer in the view, in points.
- (void)onPointer:(std::function<void(QPointF)>)moved gone:(std::function<void()>)gone;
@end
