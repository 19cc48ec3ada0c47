#include "Overlay/VantroWindowController.h"

#include "Overlay/ZVMainBundleIconImageView.h"
#include "Platform/Bundles.h"
#include "Platform/HostProcess.h"
#include "Vocabulary/Layouts.h"

namespace vantro {

namespace {

// Compared by address: the controller's own registration on its icon view.
constexpr char VantroIconViewInDragContext[] = "VantroIconViewInDragContext";

}  // namespace

std::shared_ptr<VantroWindowController> VantroWindowController::initWithWindowNibName(std::string_view nibName) {
    auto controller = std::make_shared<VantroWindowController>();
    // Looked for where the platform looks: the framework's bundle, then the
    // host's. A layout in neither gives the controller no window.
    auto& platform = HostProcess::current().platform();
    auto framework = platform.bundles().frameworkBundle();
    if (!(framework && framework->pathForResource(nibName, "nib"))) {
        auto main = platform.bundles().mainBundle();
        if (!bundleHoldsCompiledNib(main.get(), nibName)) return controller;
    }
    OverlayLayout layout = platform.windows().loadWindowNib(nibName, *controller);
    controller->window_ = std::move(layout.window);
    controller->setUnlockMessageField(layout.unlockMessageField);
    if (layout.iconView) controller->setIconView(layout.iconView);
    return controller;
}

VantroWindowController::~VantroWindowController() {
    // An icon view already gone took the registration with it.
    if (auto icon = iconView_.lock()) icon->removeObserver(*this, "inDrag", VantroIconViewInDragContext);
}

void VantroWindowController::setIconView(const std::shared_ptr<ZVMainBundleIconImageView>& iconView) {
    // "iconView.inDrag" affects "inDrag": the controller re-announces every
    // change of the connected icon view's inDrag as its own, and a new icon
    // view may have another inDrag.
    if (auto old = iconView_.lock()) old->removeObserver(*this, "inDrag", VantroIconViewInDragContext);
    iconView_ = iconView;
    if (iconView) iconView->addObserver(*this, "inDrag", ObservingOptionNone, VantroIconViewInDragContext);
    didChangeValueForKey("inDrag");
}

std::vector<std::string> VantroWindowController::keyPathsForValuesAffectingInDrag() { return {"iconView.inDrag"}; }

bool VantroWindowController::inDrag() const {
    auto icon = iconView_.lock();
    return icon && icon->inDrag();
}

void VantroWindowController::observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) {
    if (context != VantroIconViewInDragContext || keyPath != "inDrag") return;
    if (auto icon = iconView_.lock(); icon && &object == icon.get()) didChangeValueForKey("inDrag");
}

}  // namespace vantro
