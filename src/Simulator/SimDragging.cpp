#include "Simulator/SimDragging.h"

#include <algorithm>
#include <cstdio>

#include "Simulator/SimWorkspace.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

std::string describe(Point p) {
    char text[64];
    std::snprintf(text, sizeof text, "(%g, %g)", p.x, p.y);
    return text;
}

// A file URL on the simulated disk as the user names the file: its path on
// the Mac ("/Applications/Vantro Demo.app"), not where the disk happens to
// be; any other URL as it is.
std::string describe(const std::string& url, const std::string& root) {
    std::string disk = SimWorkspace::directoryURL(root);
    disk.pop_back();
    if (!url.starts_with(disk) || url.size() == disk.size() || url[disk.size()] != '/') return url;
    std::string path;
    for (std::size_t i = disk.size(); i < url.size(); ++i) {
        unsigned code = 0;
        if (url[i] == '%' && i + 2 < url.size() && std::sscanf(url.c_str() + i + 1, "%2x", &code) == 1) {
            path += static_cast<char>(code);
            i += 2;
        } else {
            path += url[i];
        }
    }
    if (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

}  // namespace

SimDraggingSession::SimDraggingSession(std::vector<DraggingItem> items, Event event, std::weak_ptr<DraggingSource> source,
                                       Point windowOrigin, Point viewOrigin)
    : items_(std::move(items)), event_(event), source_(std::move(source)), viewOrigin_(viewOrigin) {
    start_ = {windowOrigin.x + event.locationInWindow.x, windowOrigin.y + event.locationInWindow.y};
    location_ = start_;
}

Rect SimDraggingSession::imageFrameOnScreen() const {
    if (items_.empty()) return {};
    const Rect& frame = items_.front().draggingFrame;
    return {{viewOrigin_.x + frame.origin.x + (location_.x - start_.x), viewOrigin_.y + frame.origin.y + (location_.y - start_.y)},
            frame.size};
}

std::shared_ptr<DraggingSession> SimDragging::beginDraggingSession(const std::vector<DraggingItem>& items, const Event& event,
                                                                   std::weak_ptr<DraggingSource> source) {
    // Only an item whose pasteboard writer makes a URL can be dragged.
    const bool draggable = std::any_of(items.begin(), items.end(),
                                       [](const DraggingItem& item) { return SimWorkspace::isValidURL(item.pasteboardWriterURL); });
    if (refusesDrags_ || !draggable) {
        mac_.record("drag", draggable ? "no drag starts: AppKit refuses it" : "no drag starts: nothing can be dragged");
        return nullptr;
    }
    if (session_) {
        // A new drag replaces one still running, as the old one can no
        // longer be dropped.
        mac_.record("drag", "the previous drag is given up");
        end(session_->location(), NSDragOperationNone, false);
    }
    session_ = std::make_shared<SimDraggingSession>(items, event, std::move(source), eventWindowOrigin_, eventViewOrigin_);
    ++begun_;
    std::string what = items.empty() ? std::string("nothing") : describe(items.front().pasteboardWriterURL, mac_.rootDirectory());
    mac_.record("drag", "begins dragging " + what + " from " + describe(session_->startLocation()));
    return session_;
}

bool SimDragging::moveTo(Point screenPoint) {
    if (!session_) return false;
    session_->location_ = screenPoint;
    return true;
}

std::optional<DragOperation> SimDragging::dropAt(Point screenPoint) {
    if (!session_) return std::nullopt;
    session_->location_ = screenPoint;
    auto keep = session_;
    Drop drop;
    drop.url = keep->items_.empty() ? std::string() : keep->items_.front().pasteboardWriterURL;
    drop.screenPoint = screenPoint;
    if (auto source = keep->source()) drop.allowed = source->sourceOperationMaskForDraggingContext(*keep, DraggingContext::OutsideApplication);
    DragOperation operation = NSDragOperationNone;
    if (dropTarget_ && drop.allowed != NSDragOperationNone) operation = dropTarget_(drop) & drop.allowed;
    if (operation != NSDragOperationNone) {
        mac_.record("drag", "dropped at " + describe(screenPoint) + ", taken (operation " + std::to_string(operation) + ")");
    } else {
        mac_.record("drag", "dropped at " + describe(screenPoint) + ", refused");
    }
    end(screenPoint, operation, operation == NSDragOperationNone && keep->animatesBack_);
    return operation;
}

bool SimDragging::cancel() {
    if (!session_) return false;
    mac_.record("drag", "cancelled at " + describe(session_->location()));
    end(session_->location(), NSDragOperationNone, session_->animatesBack_);
    return true;
}

void SimDragging::end(Point point, DragOperation operation, bool slideBack) {
    auto finished = std::move(session_);
    session_.reset();
    if (slideBack) mac_.record("drag", "the image slides back to " + describe(finished->startLocation()));
    ended_.push_back({finished->items_, finished->event_, point, operation, slideBack, finished->animatesBack_, finished->formation_});
    // The source is told last, when the platform no longer holds the drag:
    // it may start another one from there.
    if (auto source = finished->source()) source->draggingSessionEndedAtPoint(*finished, point, operation);
}

}  // namespace vantro::sim
