#pragma once

#include <memory>
#include <string_view>

#include "Platform/Controls.h"
#include "Platform/Observation.h"
#include "Vocabulary/PrivacyCategoryRecord.h"

namespace vantro {

class VantroViewController;

// The permission list's cell with a category's request button. It follows its
// row's "status": the button reads "Grant Permission", "Check Permission" or
// "Request Permission" (by the category's request type) while the category is
// not granted, and "Permission Granted", disabled, once it is. A click asks
// the status center for the category and has the list rebuild shortly after.
//
// The table makes the cell from the list's layout and reuses it for other
// rows; each new object value takes the observation along. Main thread.
class VantroRequestButtonTableCellView : public TableCellView, public Observer {
public:
    // The context of the row's "status" observation, recognised by address.
    static constexpr char StatusContext[] = "status";

    VantroRequestButtonTableCellView() = default;
    ~VantroRequestButtonTableCellView() override;

    // The row shown (the cell holds it); nullptr for none.
    const PrivacyCategoryRecordPtr& objectValue() const { return objectValue_; }
    // Moves the "status" observation from the current row to `row`, and
    // brings the button up to date with `row` at once.
    void setObjectValue(PrivacyCategoryRecordPtr row);

    // The layout's button outlet (held weakly).
    std::shared_ptr<Button> authorizationButton() const { return authorizationButton_.lock(); }
    void setAuthorizationButton(const std::shared_ptr<Button>& button) { authorizationButton_ = button; }
    // The list that handed out this cell (held weakly).
    std::shared_ptr<VantroViewController> vantroViewController() const { return vantroViewController_.lock(); }
    void setVantroViewController(std::weak_ptr<VantroViewController> list) { vantroViewController_ = std::move(list); }

    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;

    // Sets the button's title and enabled state from the row's status; an
    // unexpected status leaves the button as it is.
    void updateAuthorizationButton();
    // The button's action: requests the row's category (not silently) and
    // has the list rebuild. A row without identifier makes it do nothing.
    void requestAuthorization(Button* sender);

private:
    PrivacyCategoryRecordPtr objectValue_;
    std::weak_ptr<Button> authorizationButton_;
    std::weak_ptr<VantroViewController> vantroViewController_;
};

}  // namespace vantro
