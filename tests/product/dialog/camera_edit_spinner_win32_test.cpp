// The camera edit dialog in a host that gives no spinner.
#include "tests/support/camera_edit_fixture.h"

namespace {

using CameraEditWithoutSpinner = support::CameraEdit;

TEST_F(CameraEditWithoutSpinner, OpeningLogsThatTheSizesDoNotFollowEachOther) {
    test_host().has_spinners = false;
    owner = show(IDD_MAIN, support::OwnerProc);
    new_log_lines();
    dialog = show(IDD_CAMERA_EDIT, tarvo::CameraEditDialogProc, owner);
    const std::string line = "[ERROR] The host gave no spinner: width and height do not follow each other.";
    // The fields of the two sizes notify twice each (EN_UPDATE, EN_CHANGE) when they are filled; then the
    // ratio.
    EXPECT_EQ(new_log_lines(), std::vector<std::string>(5, line));
}

} // namespace
