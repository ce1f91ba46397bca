// SPDX-License-Identifier: MIT
#include "platform/window/x11/Coverage.h"

#include <xcb/shape.h>

#include <QRegion>
#include <algorithm>

namespace platform {

namespace {

// The interval between two looks, in seconds, at windows in sight and while a window is
// covered: a user waits for a window that comes into sight again.
constexpr double kInSight = 2.0;
constexpr double kCovered = 0.25;
constexpr double kTolerance = 0.1;
// The most windows above one that are examined. A window under more of them counts as seen,
// which costs a few frames.
constexpr int kMost = 256;

bool knowsShapes(xcb_connection_t* connection) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_shape_id);
    return extension && extension->present;
}

// The requests about each window above, sent together so that they cost one wait.
struct Asked {
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_get_property_cookie_t opacity;
    xcb_shape_query_extents_cookie_t shape;
};

// The rectangle of the root that a window hides; empty where it hides nothing.
QRect hiddenBy(xcb_connection_t* connection, const Asked& asked, bool shapes) {
    const auto attributes = answer(connection, asked.attributes, xcb_get_window_attributes_reply);
    const auto geometry = answer(connection, asked.geometry, xcb_get_geometry_reply);
    const auto opacity = answer(connection, asked.opacity, xcb_get_property_reply);
    XcbReply<xcb_shape_query_extents_reply_t> shape;
    if (shapes) shape = answer(connection, asked.shape, xcb_shape_query_extents_reply);
    if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT || geometry->depth == 32)
        return {};
    if ((opacity && opacity->type != XCB_ATOM_NONE) || (shape && shape->bounding_shaped)) return {};
    const int border = 2 * geometry->border_width;
    return {geometry->x, geometry->y, geometry->width + border, geometry->height + border};
}

// The windows right below the root, upwards from above the one that holds `window`; none
// where `window` is the root, or gone.
std::vector<xcb_window_t> above(xcb_connection_t* connection, xcb_window_t window,
                                xcb_window_t root) {
    xcb_window_t top = window;
    for (xcb_window_t at = window; at != root;) {
        const auto tree = answer(connection, xcb_query_tree(connection, at), xcb_query_tree_reply);
        if (!tree) return {};
        top = std::exchange(at, tree->parent);
        if (at == XCB_NONE) return {};
    }
    const auto tree = answer(connection, xcb_query_tree(connection, root), xcb_query_tree_reply);
    if (!tree) return {};
    const xcb_window_t* const first = xcb_query_tree_children(tree.get());
    const xcb_window_t* const last = first + xcb_query_tree_children_length(tree.get());
    const xcb_window_t* const own = std::find(first, last, top);
    if (own == last || last - own > kMost) return {};
    return {own + 1, last};
}

}  // namespace

bool isCovered(const XConnection& over, xcb_window_t window) {
    xcb_connection_t* const connection = over.get();
    const auto look = lookAt(connection, window);
    if (!look || !look->viewable) return false;
    const auto corner = over.cornerOf(window, look->root);
    const auto screen =
        answer(connection, xcb_get_geometry(connection, look->root), xcb_get_geometry_reply);
    if (!corner || !screen) return false;
    const xcb_atom_t opacity = over.atom("_NET_WM_WINDOW_OPACITY");
    const bool shapes = knowsShapes(connection);
    std::vector<Asked> all;
    for (const xcb_window_t other : above(connection, window, look->root)) {
        Asked asked{
            .attributes = xcb_get_window_attributes(connection, other),
            .geometry = xcb_get_geometry(connection, other),
            .opacity = xcb_get_property(connection, 0, other, opacity, XCB_ATOM_CARDINAL, 0, 1),
            .shape = {}};
        if (shapes) asked.shape = xcb_shape_query_extents(connection, other);
        all.push_back(asked);
    }
    QRegion seen = QRect(*corner, QSize(look->width, look->height)) &
                   QRect(0, 0, screen->width, screen->height);
    const bool onScreen = !seen.isEmpty();
    for (const Asked& asked : all)
        seen -= hiddenBy(connection, asked, shapes);
    return onScreen && seen.isEmpty();
}

CoverageWatch::CoverageWatch(MediaClock& clock, const QString& display, Actions actions)
    : clock_(clock),
      display_(display),
      actions_(std::move(actions)),
      queue_(std::make_unique<SerialQueue>("coverage")) {}

CoverageWatch::~CoverageWatch() = default;

void CoverageWatch::wake() {
    awake_ = true;
    schedule(false);
}

void CoverageWatch::rest() {
    awake_ = false;
    timer_ = Timer();
}

void CoverageWatch::schedule(bool anyCovered) {
    timer_ = Timer(clock_, {.interval = anyCovered ? kCovered : kInSight, .tolerance = kTolerance},
                   [this] { look(); });
}

void CoverageWatch::look() {
    std::vector<xcb_window_t> windows = actions_.windows();
    if (windows.empty()) return schedule(false);
    queue_->async([this, windows = std::move(windows), weak = std::weak_ptr(self_)] {
        if (!connection_) connection_ = std::make_unique<XConnection>(display_);
        std::vector<Finding> findings;
        for (const xcb_window_t window : windows)
            if (connection_->isAlive())
                findings.push_back({window, isCovered(*connection_, window)});
        runOnMainQueue([weak, findings = std::move(findings)] {
            if (const auto self = weak.lock()) (*self)->found(findings);
        });
    });
}

void CoverageWatch::found(const std::vector<Finding>& findings) {
    if (!awake_) return;
    schedule(std::any_of(findings.begin(), findings.end(),
                         [](const Finding& finding) { return finding.covered; }));
    for (const Finding& finding : findings)
        actions_.tell(finding.window, finding.covered);
}

}  // namespace platform
