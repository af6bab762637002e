// The layout dialogs driven as a user drives them: real clicks on their buttons, typing, Escape
// and Return, with the real layout manager holding layouts read from a temporary user folder.
// With VX_SCREENSHOT_DIR set, each dialog is also grabbed to a PNG there.

#include "tests/uiframe/PanelLayoutTestSupport.h"

#include "UIFrame/Canvas/PanelLayoutDialogs.h"

#include "Platform/StdUI/Button.h"

#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

using namespace layout_test;

namespace {

void Click(QWidget* dialog, const char* buttonName)
{
    auto* button = dialog->findChild<QAbstractButton*>(QString::fromLatin1(buttonName));
    ASSERT_NE(button, nullptr) << buttonName;
    ASSERT_TRUE(button->isVisible()) << buttonName;
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
}

QLineEdit* Field(QWidget* dialog, const char* name)
{
    return dialog->findChild<QLineEdit*>(QString::fromLatin1(name));
}

// Replaces the field's text the way a user does: select everything, then type.
void Retype(QLineEdit* field, const QString& text)
{
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClicks(field, text);
}

void Screenshot(QWidget* dialog, const char* name)
{
    const QString folder = qEnvironmentVariable("VX_SCREENSHOT_DIR");
    if (folder.isEmpty())
        return;
    dialog->grab().save(QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".png")));
}

} // namespace

class PanelLayoutDialogsTest : public LayoutFixture
{
protected:
    void SetUp() override
    {
        LayoutFixture::SetUp();
        ASSERT_TRUE(core::langx::SetLanguage(QStringLiteral("en")));
        parent = new QWidget;
        parent->setGeometry(100, 80, 900, 640);
        parent->show();
    }
    void TearDown() override
    {
        delete parent;
        LayoutFixture::TearDown();
    }

    // `count` user layouts "Layout 1" ... in the user folder, loaded by the real manager, and one
    // built-in layout "Built-in".
    void LoadUserLayouts(int count)
    {
        for (int i = 1; i <= count; ++i) {
            const CVXPanelLayoutTemplate layout =
                MakeLayout(1700000000000ULL + i, QStringLiteral("Layout %1").arg(i), true);
            ASSERT_TRUE(CVXPanelLayoutManager::SavePanelLayoutToFile(layout, UserFile(layout.layoutKey())));
        }
        bool loaded = false;
        CVXPanelLayoutManager::Instance().AsyncLoadCustomizedPanelLayouts([&loaded] { loaded = true; });
        ASSERT_TRUE(WaitFor([&loaded] { return loaded; }));
        CVXPanelLayoutManager::Instance().AddOrUpdatePanelLayoutData(
            MakeLayout(0, QStringLiteral("Built-in"), false), CVXPanelLayoutManager::ObjectData);
        ASSERT_EQ(CVXPanelLayoutManager::Instance().GetCustomPanelLayoutCount(), count);
    }

    CVXPanelLayoutSaveDialog* OpenSave(const QString& name, const QString& remarks)
    {
        CVXPanelLayoutSaveDialog* dialog = CVXPanelLayoutSaveDialog::AreYouWantToSave(
            parent, name, remarks, [this](const CVXPanelLayoutSaveDialog::Result& result) {
                ++saveResults;
                saveResult = result;
            });
        return dialog;
    }

    QWidget* parent = nullptr;
    int saveResults = 0;
    std::optional<CVXPanelLayoutSaveDialog::Result> saveResult;
};

TEST_F(PanelLayoutDialogsTest, SaveDialogShowsItsTextsPrefilledAndReportsTypedNameAndRemarks)
{
    QPointer<CVXPanelLayoutSaveDialog> dialog =
        OpenSave(QStringLiteral("Morning"), QStringLiteral("HK open"));
    ASSERT_TRUE(dialog);
    EXPECT_EQ(QApplication::activeModalWidget(), dialog.data());
    EXPECT_TRUE(dialog->isModal());
    EXPECT_EQ(dialog->title(), QStringLiteral("Save layout"));
    QStringList labels;
    for (QLabel* label : dialog->findChildren<QLabel*>()) {
        if (!label->text().isEmpty() && label->isVisible() &&
            label->objectName() != QStringLiteral("VDialogTitle"))
            labels << label->text();
    }
    EXPECT_EQ(labels, (QStringList{"Layout name", "Remarks"}));
    EXPECT_EQ(dialog->findChild<QPushButton*>(QStringLiteral("Confirm_Button"))->text(),
              QStringLiteral("Save"));
    EXPECT_EQ(dialog->findChild<QPushButton*>(QStringLiteral("Cancel_Button"))->text(),
              QStringLiteral("Cancel"));
    EXPECT_EQ(dialog->GetName(), QStringLiteral("Morning"));
    EXPECT_EQ(dialog->property("name").toString(), QStringLiteral("Morning"));
    EXPECT_EQ(dialog->property("remarks").toString(), QStringLiteral("HK open"));
    Screenshot(dialog, "save-dialog");

    QSignalSpy confirmed(dialog.data(), &CVXPanelLayoutSaveDialog::ConfirmButtonClicked);
    Retype(Field(dialog, "Name_Edit"), QStringLiteral("  Evening  "));
    Retype(Field(dialog, "Remarks_Edit"), QStringLiteral("US close"));
    EXPECT_EQ(dialog->GetRemarks(), QStringLiteral("US close"));
    Click(dialog, "Confirm_Button");

    EXPECT_EQ(confirmed.count(), 1);
    ASSERT_EQ(saveResults, 1);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Confirmed);
    EXPECT_EQ(saveResult->name, QStringLiteral("Evening"));
    EXPECT_EQ(saveResult->remarks, QStringLiteral("US close"));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}

TEST_F(PanelLayoutDialogsTest, SaveDialogCancelsByButtonEscapeAndCloseButtonAndConfirmsWithReturn)
{
    QPointer<CVXPanelLayoutSaveDialog> dialog = OpenSave(QStringLiteral("A"), QString());
    QSignalSpy cancelled(dialog.data(), &CVXPanelLayoutSaveDialog::CancelButtonClicked);
    Click(dialog, "Cancel_Button");
    EXPECT_EQ(cancelled.count(), 1);
    ASSERT_EQ(saveResults, 1);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Cancelled);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);

    dialog = OpenSave(QStringLiteral("B"), QString());
    QTest::keyClick(Field(dialog, "Name_Edit"), Qt::Key_Escape);
    ASSERT_EQ(saveResults, 2);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Cancelled);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);

    dialog = OpenSave(QStringLiteral("C"), QString());
    Click(dialog, "Close_Button");
    ASSERT_EQ(saveResults, 3);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Cancelled);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);

    dialog = OpenSave(QStringLiteral("D"), QStringLiteral("r"));
    QTest::keyClick(Field(dialog, "Name_Edit"), Qt::Key_Return);
    ASSERT_EQ(saveResults, 4);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Confirmed);
    EXPECT_EQ(saveResult->name, QStringLiteral("D"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}

TEST_F(PanelLayoutDialogsTest, NewNameAtFiftyUserLayoutsKeepsTheDialogOpenWithTheLimitMessage)
{
    LoadUserLayouts(50);
    QPointer<CVXPanelLayoutSaveDialog> dialog = OpenSave(QStringLiteral("Fifty-first"), QString());
    Click(dialog, "Confirm_Button");

    EXPECT_EQ(saveResults, 0);
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(
        dialog->ErrorToolTipText(),
        QStringLiteral(
            "You already have 50 layouts, the most you can keep. Delete one before saving a new layout."));
    auto* tip = dialog->findChild<QLabel*>(QStringLiteral("Error_ToolTip"));
    ASSERT_NE(tip, nullptr);
    EXPECT_TRUE(tip->isVisible());
    // The tip sits under the name field.
    QLineEdit* name = Field(dialog, "Name_Edit");
    EXPECT_GE(tip->geometry().top(), name->mapTo(dialog.data(), QPoint(0, name->height())).y());
    Screenshot(dialog, "save-dialog-limit");

    // Editing the name takes the tip away; the name of a user layout is accepted (replace
    // follows), and so is the name of a built-in layout.
    Retype(name, QStringLiteral("Layout 17"));
    EXPECT_TRUE(dialog->ErrorToolTipText().isEmpty());
    Click(dialog, "Confirm_Button");
    ASSERT_EQ(saveResults, 1);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Confirmed);
    EXPECT_EQ(saveResult->name, QStringLiteral("Layout 17"));

    dialog = OpenSave(QStringLiteral("Built-in"), QString());
    Click(dialog, "Confirm_Button");
    ASSERT_EQ(saveResults, 2);
    EXPECT_EQ(saveResult->name, QStringLiteral("Built-in"));
}

TEST_F(PanelLayoutDialogsTest, NewNameBelowTheLimitIsAccepted)
{
    LoadUserLayouts(49);
    OpenSave(QStringLiteral("Forty-ninth plus one"), QString());
    Click(QApplication::activeModalWidget(), "Confirm_Button");
    ASSERT_EQ(saveResults, 1);
    EXPECT_EQ(saveResult->choice, CVXPanelLayoutSaveDialog::Choice::Confirmed);
}

TEST_F(PanelLayoutDialogsTest, EmptyNameIsRefusedWithAMessage)
{
    QPointer<CVXPanelLayoutSaveDialog> dialog = OpenSave(QStringLiteral("   "), QString());
    Click(dialog, "Confirm_Button");
    EXPECT_EQ(saveResults, 0);
    EXPECT_EQ(dialog->ErrorToolTipText(), QStringLiteral("Please enter a layout name."));
    // The tool tip can be shown directly too.
    dialog->ShowErrorToolTip(QStringLiteral("Server busy"));
    EXPECT_EQ(dialog->ErrorToolTipText(), QStringLiteral("Server busy"));
    Click(dialog, "Cancel_Button");
    EXPECT_EQ(saveResults, 1);
}

TEST_F(PanelLayoutDialogsTest, EditDialogAsksTheCheckAboutTheTrimmedName)
{
    QStringList asked;
    int results = 0;
    std::optional<CVXPanelLayoutSaveDialog::Result> last;
    QPointer<CVXPanelLayoutSaveDialog> dialog = CVXPanelLayoutSaveDialog::AreYouWantToEdit(
        parent, QStringLiteral("Old"), QStringLiteral("notes"),
        [&asked](const QString& name) {
            asked << name;
            return name != QStringLiteral("Taken");
        },
        [&](const CVXPanelLayoutSaveDialog::Result& result) {
            ++results;
            last = result;
        });
    EXPECT_EQ(dialog->GetRemarks(), QStringLiteral("notes"));

    Retype(Field(dialog, "Name_Edit"), QStringLiteral(" Taken "));
    Click(dialog, "Confirm_Button");
    EXPECT_EQ(asked, (QStringList{"Taken"}));
    EXPECT_EQ(results, 0);
    EXPECT_EQ(dialog->ErrorToolTipText(), QStringLiteral("Another layout already uses this name."));

    Retype(Field(dialog, "Name_Edit"), QStringLiteral("Fresh"));
    Click(dialog, "Confirm_Button");
    EXPECT_EQ(asked, (QStringList{"Taken", "Fresh"}));
    ASSERT_EQ(results, 1);
    EXPECT_EQ(last->choice, CVXPanelLayoutSaveDialog::Choice::Confirmed);
    EXPECT_EQ(last->name, QStringLiteral("Fresh"));
    EXPECT_EQ(last->remarks, QStringLiteral("notes"));
}

TEST_F(PanelLayoutDialogsTest, ReplaceQuestionNamesTheLayoutAndReportsTheAnswer)
{
    std::vector<CVXPanelLayoutReplaceDialog::Result> answers;
    auto record = [&answers](CVXPanelLayoutReplaceDialog::Result r) { answers.push_back(r); };

    QPointer<CVXPanelLayoutReplaceDialog> dialog =
        CVXPanelLayoutReplaceDialog::AreYouWantToReplace(parent, QStringLiteral("Morning"), record);
    EXPECT_EQ(QApplication::activeModalWidget(), dialog.data());
    EXPECT_EQ(dialog->Question(),
              QStringLiteral("A layout named \u201cMorning\u201d already exists. Replace it?"));
    EXPECT_EQ(dialog->findChild<QPushButton*>(QStringLiteral("Confirm_Button"))->text(),
              QStringLiteral("Replace"));
    Screenshot(dialog, "replace-dialog");
    Click(dialog, "Confirm_Button");

    dialog = CVXPanelLayoutReplaceDialog::AreYouWantToReplace(parent, QStringLiteral("x"), record);
    Click(dialog, "Cancel_Button");
    dialog = CVXPanelLayoutReplaceDialog::AreYouWantToReplace(parent, QStringLiteral("x"), record);
    QTest::keyClick(dialog, Qt::Key_Escape);
    // Return answers with the default button, the replace.
    dialog = CVXPanelLayoutReplaceDialog::AreYouWantToReplace(parent, QStringLiteral("x"), record);
    QTest::keyClick(dialog, Qt::Key_Return);

    using R = CVXPanelLayoutReplaceDialog::Result;
    EXPECT_EQ(answers, (std::vector<R>{R::Replace, R::Cancel, R::Cancel, R::Replace}));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}

TEST_F(PanelLayoutDialogsTest, DeleteAndCloseQuestionsReportEachButton)
{
    std::vector<CVXPanelLayoutDeleteDialog::Result> deletes;
    QPointer<CVXPanelLayoutDeleteDialog> deleteDialog = CVXPanelLayoutDeleteDialog::AreYouWantToDelete(
        parent, [&deletes](CVXPanelLayoutDeleteDialog::Result r) { deletes.push_back(r); });
    EXPECT_EQ(deleteDialog->title(), QStringLiteral("Delete layout"));
    EXPECT_EQ(deleteDialog->Question(),
              QStringLiteral("The layout will be deleted and cannot be restored. Delete it?"));
    Screenshot(deleteDialog, "delete-dialog");
    Click(deleteDialog, "Confirm_Button");
    deleteDialog = CVXPanelLayoutDeleteDialog::AreYouWantToDelete(
        parent, [&deletes](CVXPanelLayoutDeleteDialog::Result r) { deletes.push_back(r); });
    Click(deleteDialog, "Cancel_Button");
    using D = CVXPanelLayoutDeleteDialog::Result;
    EXPECT_EQ(deletes, (std::vector<D>{D::Delete, D::Cancel}));

    std::vector<CVXPanelLayoutCloseDialog::Result> closes;
    auto record = [&closes](CVXPanelLayoutCloseDialog::Result r) { closes.push_back(r); };
    QPointer<CVXPanelLayoutCloseDialog> closeDialog =
        CVXPanelLayoutCloseDialog::AreYouWantToContinueClosing(parent, record);
    EXPECT_EQ(closeDialog->Question(),
              QStringLiteral("This layout has unsaved changes. Save them before closing?"));
    Screenshot(closeDialog, "close-dialog");
    Click(closeDialog, "Confirm_Button");
    closeDialog = CVXPanelLayoutCloseDialog::AreYouWantToContinueClosing(parent, record);
    Click(closeDialog, "Discard_Button");
    closeDialog = CVXPanelLayoutCloseDialog::AreYouWantToContinueClosing(parent, record);
    Click(closeDialog, "Cancel_Button");
    closeDialog = CVXPanelLayoutCloseDialog::AreYouWantToContinueClosing(parent, record);
    QTest::keyClick(closeDialog, Qt::Key_Escape);
    using C = CVXPanelLayoutCloseDialog::Result;
    EXPECT_EQ(closes, (std::vector<C>{C::Save, C::Discard, C::Cancel, C::Cancel}));
    QTRY_VERIFY_WITH_TIMEOUT(closeDialog.isNull(), 5000);
}

TEST_F(PanelLayoutDialogsTest, ChineseTextsAreTheFallbacksWithoutACatalogue)
{
    core::langx::ResetForTest();
    QPointer<CVXPanelLayoutReplaceDialog> dialog =
        CVXPanelLayoutReplaceDialog::AreYouWantToReplace(parent, QStringLiteral("早盘"), {});
    EXPECT_EQ(dialog->Question(), QStringLiteral("已存在名为“早盘”的布局，是否替换？"));
    Screenshot(dialog, "replace-dialog-zh");
    // A dialog without callback still closes.
    Click(dialog, "Confirm_Button");
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
}
