#pragma once

// Shared by the gallery, preview and save tests: the real layout manager on a temporary root
// (user folder and application folder), a built-in layout catalogue written into it, a main tab
// widget holding a gallery page between two other tabs, and helpers that find and drive the
// layout dialogs with real clicks and typing.

#include "tests/common/TestSupport.h"
#include "tests/uiframe/CanvasTestSupport.h"

#include "UIFrame/Canvas/PanelLayoutDialogs.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutPage.h"
#include "UIFrame/Canvas/PanelLayoutPreview.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/Report.h"
#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMutex>
#include <QPainter>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace gallery_test {

// The built-in layout of the catalogue the fixture writes: its name and remarks text ids and
// what the test catalogue translates them to.
constexpr int kBuiltInNameId = 990001;
constexpr int kBuiltInRemarksId = 990002;
inline QString BuiltInTitle()
{
    return QStringLiteral("Two links");
}
inline QString BuiltInRemarks()
{
    return QStringLiteral("Two linked boxes side by side");
}
// The gallery's tab id in the main tab widget.
constexpr vx_std_ui::TabId kGalleryTabId = 77;

class GalleryFixture : public canvas_test::CanvasFixture
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(root.isValid());
        core::product_path::SetRootOverride(root.path());
        canvas_test::CanvasFixture::SetUp();
        // The fixture's own canvas is not needed here; the tests open canvases through pages.
        canvases.clear();
        delete canvas;
        canvas = nullptr;
        core::report::SetWriter([this](const std::string& line) {
            QMutexLocker lock(&reportMutex);
            reports.push_back(line);
        });
    }

    void TearDown() override
    {
        while (QWidget* modal = QApplication::activeModalWidget())
            delete modal;
        delete tabs;
        tabs = nullptr;
        for (QPointer<QWidget>& w : owned)
            delete w.data();
        owned.clear();
        FlushDeletes();
        // File work of the manager finishes before the folders go.
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        CVXPanelLayoutManager::ResetForTest();
        core::report::Flush();
        core::report::ResetForTest();
        core::IVXPluginCenter::Instance().ResetForTest();
        core::langx::ResetForTest();
        canvas_test::CanvasFixture::TearDown();
        core::product_path::ResetForTest();
    }

    static CVXPanelLayoutManager& Manager() { return CVXPanelLayoutManager::Instance(); }

    // A canvas record of `count` boxes of the link card, each card noting its number.
    CVXVariantMapTree CanvasRecord(int count)
    {
        auto* source = new CVXPanelScrollView;
        source->resize(900, 600);
        for (int i = 0; i < count; ++i) {
            auto* box = source->AddPanelBoxWithCardInitType(
                QString::fromLatin1(canvas_test::CLinkCard::kCardType), CVXVariantMapTree());
            CardOf(box)->note = QStringLiteral("box %1").arg(i);
        }
        CVXVariantMapTree record;
        source->GetObjRestoreData(&record);
        delete source;
        FlushDeletes();
        return record;
    }

    static QPixmap SolidPixmap(const QSize& size, const QColor& color)
    {
        QPixmap pixmap(size);
        pixmap.fill(color);
        return pixmap;
    }

    // A user layout put into the manager as the cloud sync would (memory only).
    CVXPanelLayoutTemplate AddUserLayout(unsigned long long key, const QString& title, int boxes = 1)
    {
        CVXPanelLayoutTemplate layout;
        layout.setLayoutKey(key);
        layout.setTitle(title);
        layout.setRemarks(QStringLiteral("remarks of ") + title);
        layout.setRestoreData(CanvasRecord(boxes));
        layout.setPreviewPixmap(SolidPixmap(QSize(160, 100), Qt::darkCyan));
        layout.setUpdateTimestamp(1000 + key);
        layout.setIsCustomized(true);
        Manager().AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::ObjectData);
        return layout;
    }

    // Writes a catalogue with one built-in layout of two boxes (and its preview image, left half
    // opaque red, right half transparent) into the application folder and loads it through the
    // manager. Returns the built-in layout's key.
    unsigned long long LoadBuiltInLayout()
    {
        const QString folder = core::product_path::GetAppFolder() + QStringLiteral("/LayoutTemplates/");
        EXPECT_TRUE(QDir().mkpath(folder));
        CVXPanelLayoutTemplate layout;
        layout.setTitle(QStringLiteral("Grid"));
        layout.setRemarks(QStringLiteral("untranslated remarks"));
        layout.setRestoreData(CanvasRecord(2));
        layout.setIsCustomized(false);
        EXPECT_TRUE(
            CVXPanelLayoutManager::SavePanelLayoutToFile(layout, folder + QStringLiteral("Grid.vxl")));
        QImage image(40, 20, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.fillRect(QRect(0, 0, 20, 20), Qt::red);
        }
        EXPECT_TRUE(image.save(folder + QStringLiteral("Grid.png")));
        QJsonObject entry;
        entry.insert(QStringLiteral("File"), QStringLiteral("Grid.vxl"));
        entry.insert(QStringLiteral("Image"), QStringLiteral("Grid.png"));
        entry.insert(QStringLiteral("NameLangID"), kBuiltInNameId);
        entry.insert(QStringLiteral("RemarksLangID"), kBuiltInRemarksId);
        WriteCatalogue(folder, entry);

        // The texts of the built-in layout, as the application's catalogue holds them.
        QJsonObject texts;
        texts.insert(QString::number(kBuiltInNameId), BuiltInTitle());
        texts.insert(QString::number(kBuiltInRemarksId), BuiltInRemarks());
        const QString textsPath = root.filePath(QStringLiteral("texts.json"));
        QFile textsFile(textsPath);
        EXPECT_TRUE(textsFile.open(QIODevice::WriteOnly));
        textsFile.write(QJsonDocument(texts).toJson());
        textsFile.close();
        EXPECT_TRUE(core::langx::LoadCatalogue(QStringLiteral("en"), textsPath));

        return LoadBuiltIns();
    }

    // The catalogue of built-in layouts in `folder`, holding `entry` alone.
    static void WriteCatalogue(const QString& folder, const QJsonObject& entry)
    {
        QFile catalogue(folder + QStringLiteral("DefaultPanelLayout.json"));
        EXPECT_TRUE(catalogue.open(QIODevice::WriteOnly));
        catalogue.write(QJsonDocument(QJsonArray{entry}).toJson());
        catalogue.close();
    }

    // Loads the built-in layouts and returns the key of the first; 0 (and a failure) when none loads.
    unsigned long long LoadBuiltIns()
    {
        bool loaded = false;
        Manager().AsyncLoadAllDefaultPanelLayoutEntriesAndLayouts([&loaded]() { loaded = true; });
        EXPECT_TRUE(QTest::qWaitFor([&loaded]() { return loaded; }, 10000));
        for (const CVXPanelLayoutTemplate& held : Manager().GetPanelLayoutDataListRef()) {
            if (!held.isCustomized())
                return held.layoutKey();
        }
        ADD_FAILURE() << "the built-in layout did not load";
        return 0;
    }

    // The main tab widget: "Left", the gallery (id kGalleryTabId), "Right"; shown at 1100 x 760.
    CVXPanelLayoutPage* ShowGallery()
    {
        tabs = new CVXTabWidgetRestore;
        tabs->resize(1100, 760);
        tabs->addTab(new QWidget, QStringLiteral("Left"));
        auto* page = new CVXPanelLayoutPage;
        tabs->addTab(page, QStringLiteral("Gallery"), kGalleryTabId);
        tabs->addTab(new QWidget, QStringLiteral("Right"));
        tabs->setCurrentIndex(1);
        tabs->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(tabs));
        return page;
    }

    // Another gallery in a new tab of the same tab widget, made current.
    CVXPanelLayoutPage* AddGalleryTab()
    {
        auto* page = new CVXPanelLayoutPage;
        const int index = tabs->addTab(page, QStringLiteral("Gallery 2"));
        tabs->setCurrentIndex(index);
        QCoreApplication::processEvents();
        return page;
    }

    // A real click in the middle of a card's preview image.
    static void ClickPreviewImage(CVXPanelLayoutPreview* preview)
    {
        QTest::mouseClick(WindowOf(preview), Qt::LeftButton, Qt::NoModifier,
                          InWindow(preview, preview->PreviewRect().center()));
        QCoreApplication::processEvents();
    }

    template <typename Dialog> static Dialog* OpenDialog()
    {
        Dialog* dialog = nullptr;
        const bool found = QTest::qWaitFor(
            [&dialog]() {
                for (QWidget* w : QApplication::topLevelWidgets()) {
                    if (auto* d = qobject_cast<Dialog*>(w); d && d->isVisible())
                        dialog = d;
                }
                return dialog != nullptr;
            },
            2000);
        return found ? dialog : nullptr;
    }

    static void ClickButton(QWidget* dialog, const char* objectName)
    {
        auto* button = dialog->findChild<QAbstractButton*>(QString::fromLatin1(objectName));
        ASSERT_NE(button, nullptr) << objectName;
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
        QCoreApplication::processEvents();
    }

    // Types a name (and remarks) into the open save dialog and confirms it with a click.
    static void AnswerSaveDialog(const QString& name, const QString& remarks)
    {
        auto* dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
        ASSERT_NE(dialog, nullptr) << "no save dialog";
        auto* nameEdit =
            dialog->findChild<QLineEdit*>(QString::fromLatin1(CVXPanelLayoutSaveDialog::kNameEditName));
        ASSERT_NE(nameEdit, nullptr);
        nameEdit->setFocus();
        nameEdit->selectAll();
        QTest::keyClick(nameEdit, Qt::Key_Delete);
        QTest::keyClicks(nameEdit, name);
        auto* remarksEdit =
            dialog->findChild<QLineEdit*>(QString::fromLatin1(CVXPanelLayoutSaveDialog::kRemarksEditName));
        ASSERT_NE(remarksEdit, nullptr);
        remarksEdit->setFocus();
        remarksEdit->selectAll();
        QTest::keyClick(remarksEdit, Qt::Key_Delete);
        QTest::keyClicks(remarksEdit, remarks);
        ClickButton(dialog, "Confirm_Button");
        FlushDeletes();
    }

    // The user layouts of the manager, in list order.
    static QList<CVXPanelLayoutTemplate> UserLayouts()
    {
        QList<CVXPanelLayoutTemplate> result;
        for (const CVXPanelLayoutTemplate& layout : Manager().GetPanelLayoutDataListRef()) {
            if (layout.isCustomized())
                result.append(layout);
        }
        return result;
    }

    static QStringList Titles(CVXPanelLayoutList* list)
    {
        QStringList titles;
        for (CVXPanelLayoutPreview* preview : list->Previews())
            titles.append(preview->GetTitle());
        return titles;
    }

    // The report lines written so far with that name.
    std::vector<std::string> ReportsNamed(const std::string& name)
    {
        core::report::Flush();
        QMutexLocker lock(&reportMutex);
        std::vector<std::string> found;
        for (const std::string& line : reports) {
            if (line.find("\"" + name + "\"") != std::string::npos)
                found.push_back(line);
        }
        return found;
    }

    QTemporaryDir root;
    QPointer<CVXTabWidgetRestore> tabs;
    std::vector<QPointer<QWidget>> owned;
    QMutex reportMutex;
    std::vector<std::string> reports;
};

} // namespace gallery_test
