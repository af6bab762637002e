// VDialog and VButton: modality through open(), centring over the parent, Escape, Return and
// the title bar's close button with real key and mouse input, and the painted button styles.

#include "Platform/StdUI/Dialog.h"
#include "Platform/StdUI/Button.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

using namespace vx_std_ui;

namespace {

class DialogTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        parent = std::make_unique<QWidget>();
        parent->setGeometry(200, 100, 800, 600);
        parent->show();
    }
    void TearDown() override
    {
        parent.reset();
        vx_ui_res::Provider::Instance().ResetForTest();
    }

    // A dialog with a text field and two buttons; Confirm accepts.
    VDialog* MakeDialog()
    {
        auto* dialog = new VDialog(parent.get());
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setTitle(QStringLiteral("Title"));
        dialog->setFixedSize(300, 180);
        field = new QLineEdit(dialog);
        dialog->contentLayout()->addWidget(field);
        confirm = dialog->addButton(QStringLiteral("OK"), VButton::Style::Primary,
                                    QStringLiteral("Confirm_Button"));
        cancel = dialog->addButton(QStringLiteral("No"), VButton::Style::Secondary,
                                   QStringLiteral("Cancel_Button"));
        dialog->setDefaultButton(confirm);
        QObject::connect(confirm, &QPushButton::clicked, dialog, &QDialog::accept);
        QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
        return dialog;
    }

    std::unique_ptr<QWidget> parent;
    QLineEdit* field = nullptr;
    VButton* confirm = nullptr;
    VButton* cancel = nullptr;
};

} // namespace

TEST_F(DialogTest, OpensModalOverItsParentCentred)
{
    QPointer<VDialog> dialog = MakeDialog();
    dialog->open();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_EQ(QApplication::activeModalWidget(), dialog.data());
    // Parent (200,100 800x600) has its centre at (600,400); the 300x180 dialog sits at (450,310).
    EXPECT_EQ(dialog->geometry(), QRect(450, 310, 300, 180));
    EXPECT_EQ(dialog->title(), QStringLiteral("Title"));
    EXPECT_EQ(dialog->frame(), VDialog::Frame::Titled);
    EXPECT_TRUE(dialog->findChild<QWidget*>(QStringLiteral("VDialogTitleBar"))->isVisible());

    // Moved parent, shown again: centred again.
    dialog->hide();
    parent->setGeometry(0, 0, 800, 600);
    dialog->show();
    EXPECT_EQ(dialog->geometry(), QRect(250, 210, 300, 180));
    dialog->close();
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}

TEST_F(DialogTest, EscapeAndCloseButtonReject)
{
    QPointer<VDialog> dialog = MakeDialog();
    QSignalSpy finished(dialog.data(), &QDialog::finished);
    dialog->open();
    QTest::keyClick(field, Qt::Key_Escape);
    ASSERT_EQ(finished.count(), 1);
    EXPECT_EQ(finished.at(0).at(0).toInt(), int(QDialog::Rejected));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);

    dialog = MakeDialog();
    QSignalSpy closed(dialog.data(), &QDialog::finished);
    dialog->open();
    auto* close = dialog->findChild<QAbstractButton*>(QStringLiteral("Close_Button"));
    ASSERT_NE(close, nullptr);
    QTest::mouseClick(close, Qt::LeftButton, Qt::NoModifier, close->rect().center());
    ASSERT_EQ(closed.count(), 1);
    EXPECT_EQ(closed.at(0).at(0).toInt(), int(QDialog::Rejected));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}

TEST_F(DialogTest, ReturnClicksTheDefaultButtonOnly)
{
    QPointer<VDialog> dialog = MakeDialog();
    QSignalSpy confirmClicks(confirm, &QPushButton::clicked);
    QSignalSpy cancelClicks(cancel, &QPushButton::clicked);
    QSignalSpy finished(dialog.data(), &QDialog::finished);
    dialog->open();
    // Focus on the cancel button does not make it the one Return clicks.
    cancel->setFocus();
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(confirmClicks.count(), 1);
    EXPECT_EQ(cancelClicks.count(), 0);
    ASSERT_EQ(finished.count(), 1);
    EXPECT_EQ(finished.at(0).at(0).toInt(), int(QDialog::Accepted));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);

    // Without a default button Return does nothing.
    dialog = MakeDialog();
    dialog->setDefaultButton(nullptr);
    QSignalSpy none(dialog.data(), &QDialog::finished);
    dialog->open();
    QTest::keyClick(field, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(none.count(), 0);
    EXPECT_TRUE(dialog->isVisible());
    dialog->close();
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}

TEST_F(DialogTest, FramelessDialogHasNoTitleBar)
{
    VDialog dialog(parent.get(), VDialog::Frame::Frameless);
    dialog.contentLayout()->addWidget(new QLabel(QStringLiteral("Body")));
    dialog.show();
    EXPECT_FALSE(dialog.findChild<QWidget*>(QStringLiteral("VDialogTitleBar"))->isVisible());
    EXPECT_TRUE(dialog.windowFlags() & Qt::FramelessWindowHint);
}

TEST_F(DialogTest, ButtonStylesPaintInTheThemesColours)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    VButton primary(QStringLiteral("Save"), VButton::Style::Primary);
    VButton secondary(QStringLiteral("Cancel"), VButton::Style::Secondary);
    primary.resize(100, 28);
    secondary.resize(100, 28);
    // A pixel inside the button, away from the text and the rounded corners.
    const QPoint inside(6, 14);
    const QImage primaryImage = primary.grab().toImage();
    const QImage secondaryImage = secondary.grab().toImage();
    EXPECT_EQ(QColor(primaryImage.pixel(inside)), theme.GetColor(QStringLiteral("ct_selected")));
    EXPECT_EQ(QColor(secondaryImage.pixel(inside)), theme.GetColor(QStringLiteral("ct_bg_primary")));
    // The secondary button's outline: the middle of its left edge.
    EXPECT_EQ(QColor(secondaryImage.pixel(0, 14)).name(), theme.GetColor(QStringLiteral("ct_border")).name());

    // Dark theme: the same keys, other colours.
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    EXPECT_EQ(QColor(secondary.grab().toImage().pixel(inside)),
              theme.GetColor(QStringLiteral("ct_bg_primary")));

    secondary.setButtonStyle(VButton::Style::Primary);
    EXPECT_EQ(secondary.buttonStyle(), VButton::Style::Primary);
    EXPECT_EQ(QColor(secondary.grab().toImage().pixel(inside)),
              theme.GetColor(QStringLiteral("ct_selected")));

    // Wide enough for its text with padding, never narrower than 72.
    EXPECT_EQ(VButton(QStringLiteral("OK"), VButton::Style::Primary).sizeHint().width(), 72);
    VButton wide(QString(40, QLatin1Char('W')), VButton::Style::Primary);
    EXPECT_GT(wide.sizeHint().width(), wide.fontMetrics().horizontalAdvance(wide.text()));
}
