#include "tests/support/camera_edit_fixture.h"

namespace {

using namespace support;

class CameraEditSizes : public CameraEdit {};

TEST_F(CameraEditSizes, LockedTheWidthMovesTheHeight) {
    open();
    type(dialog, IDC_EDIT_WIDTH, L"3000");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"2000");
    EXPECT_EQ(field(dialog, IDC_EDIT_RATIO), L"1.500");
    EXPECT_FALSE(ui.sizeSyncBusy);
}

TEST_F(CameraEditSizes, LockedTheHeightMovesTheWidth) {
    open();
    type(dialog, IDC_EDIT_HEIGHT, L"333");
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"499"); // 499.5, truncated
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"333");
    EXPECT_FALSE(ui.sizeSyncBusy);
}

TEST_F(CameraEditSizes, UnlockedTheSizesMoveTheRatio) {
    open();
    type(dialog, IDC_EDIT_WIDTH, L"3000");
    click_lock();
    EXPECT_TRUE(spinner().enabled);
    type(dialog, IDC_EDIT_HEIGHT, L"1000");
    EXPECT_EQ(spinner().value, 3.0f);
    EXPECT_EQ(field(dialog, IDC_EDIT_RATIO), L"3.000");
    type(dialog, IDC_EDIT_WIDTH, L"500");
    EXPECT_EQ(spinner().value, 0.5f);
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"1000");
}

TEST_F(CameraEditSizes, UnlockedATypedHeightIsNotRecomputed) {
    open();
    click_lock();
    for (const wchar_t* height : {L"7", L"11", L"1079", L"32768"}) {
        type(dialog, IDC_EDIT_HEIGHT, height);
        EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), height);
        EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"1500");
    }
}

TEST_F(CameraEditSizes, UnlockedTheRatioMovesTheHeight) {
    open();
    click_lock();
    spinner().value = 2.0f;
    type(dialog, IDC_EDIT_RATIO, L"2.000");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"750");
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"1500");
}

TEST_F(CameraEditSizes, LockedTheRatioMovesNothing) {
    open();
    spinner().value = 2.0f;
    type(dialog, IDC_EDIT_RATIO, L"2.000");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"1000");
}

TEST_F(CameraEditSizes, SpinnerStateDecidesTheLock) {
    open();
    click_lock();
    EXPECT_TRUE(spinner().enabled);
    EXPECT_FALSE(lock_is_checked());
    click_lock();
    EXPECT_FALSE(spinner().enabled);
    EXPECT_TRUE(lock_is_checked());
    ::CheckDlgButton(dialog, IDC_EDIT_RATIO_LOCK, BST_UNCHECKED); // the mark alone changes nothing
    type(dialog, IDC_EDIT_WIDTH, L"300");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"200");
}

TEST_F(CameraEditSizes, OutOfRangeSizesBecomeTheLargestSize) {
    open();
    click_lock();
    for (const int id : {IDC_EDIT_WIDTH, IDC_EDIT_HEIGHT}) {
        for (const wchar_t* text : {L"-5", L"32769", L"2147483648", L"4294967396", L"99999999999", L"-1"}) {
            type(dialog, id, text);
            EXPECT_EQ(field(dialog, id), L"32768");
        }
        for (const wchar_t* text : {L"32768", L"0", L"wide", L"12px"}) {
            type(dialog, id, text);
            EXPECT_EQ(field(dialog, id), text);
        }
    }
}

TEST_F(CameraEditSizes, LockedAWidthCutToTheLargestMovesTheHeightToo) {
    open();
    type(dialog, IDC_EDIT_WIDTH, L"-5");
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"32768");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"21845");
}

TEST_F(CameraEditSizes, LockedAHeightThatWouldNeedALargerWidthCutsTheWidth) {
    open();
    type(dialog, IDC_EDIT_HEIGHT, L"32768");
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"32768");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"32768");
}

TEST_F(CameraEditSizes, SizeWrittenByTheDialogDoesNotMoveTheOtherSize) {
    open();
    ui.sizeSyncBusy = true;
    type(dialog, IDC_EDIT_WIDTH, L"60");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"1000");
    type(dialog, IDC_EDIT_HEIGHT, L"60");
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"60");
}

TEST_F(CameraEditSizes, AnyNotificationOfASizeFieldRecomputesTheSizes) {
    const auto type_unnoticed = [this](int id, const wchar_t* text) {
        ui.sizeSyncBusy = true;
        type(dialog, id, text);
        ui.sizeSyncBusy = false;
    };
    for (const int notification : {0, EN_SETFOCUS, EN_KILLFOCUS, EN_UPDATE}) {
        open();
        type_unnoticed(IDC_EDIT_WIDTH, L"600");
        EXPECT_EQ(command(IDC_EDIT_WIDTH, notification), 1);
        EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"400");
        type_unnoticed(IDC_EDIT_HEIGHT, L"1000");
        EXPECT_EQ(command(IDC_EDIT_HEIGHT, notification), 1);
        EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"1500");
        click_lock();
        spinner().value = 2.0f;
        EXPECT_EQ(command(IDC_EDIT_RATIO, notification), 1);
        EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"750");
    }
}

} // namespace
