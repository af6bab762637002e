#pragma once

// Shared by the layout tests: a fixture that points the product folders at a QTemporaryDir and
// resets every singleton the layout manager touches, file helpers that write layout files byte by
// byte (independently of the code under test) and a bounded wait for pooled work.

#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Environment.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/Report.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>

namespace layout_test {

// Turns the event loop until `done` holds or 10 s passed (a hung worker fails, never blocks).
inline bool WaitFor(const std::function<bool()>& done)
{
    QDeadlineTimer deadline(10000);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

inline bool WaitForFileWork()
{
    return WaitFor([] { return CVXPanelLayoutManager::Instance().PendingFileWorkCount() == 0; });
}

inline QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

inline bool WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(bytes) == bytes.size();
}

// A small preview: two colours so that PNG round trips can be checked pixel by pixel.
inline QPixmap SmallPreview(QColor left = Qt::blue, QColor right = Qt::yellow)
{
    QImage image(16, 8, QImage::Format_ARGB32);
    QPainter painter(&image);
    painter.fillRect(0, 0, 8, 8, left);
    painter.fillRect(8, 0, 8, 8, right);
    painter.end();
    return QPixmap::fromImage(image);
}

// A canvas record as the canvas writes it, kept small.
inline CVXVariantMapTree CanvasRecord(int boxCount, const QString& shortcutId = QString())
{
    CVXVariantMapTree record;
    QVector<CVXVariantMapTree> boxes;
    for (int i = 0; i < boxCount; ++i) {
        CVXVariantMapTree box;
        box.Set<int>(QStringLiteral("BoxType"), 0);
        box.Set<QRect>(QStringLiteral("Geometry"), QRect(4 + 305 * i, 4, 300, 200));
        boxes.append(box);
    }
    record.Set<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"), boxes);
    record.Set<int>(QStringLiteral("BoxCount"), boxCount);
    record.Set<int>(QStringLiteral("ViewX"), 0);
    record.Set<int>(QStringLiteral("ViewY"), 0);
    if (!shortcutId.isEmpty())
        record.Set<QString>(QStringLiteral("ShortcutId"), shortcutId);
    return record;
}

inline CVXPanelLayoutTemplate MakeLayout(unsigned long long key, const QString& title, bool customized,
                                         unsigned long long stamp = 1000)
{
    CVXPanelLayoutTemplate layout;
    layout.setLayoutKey(key);
    layout.setTitle(title);
    layout.setRemarks(QStringLiteral("remarks of ") + title);
    layout.setRestoreData(CanvasRecord(2));
    layout.setPreviewPixmap(SmallPreview());
    layout.setUpdateTimestamp(stamp);
    layout.setIsCustomized(customized);
    layout.setIsUploaded(false);
    return layout;
}

// The old file format written field by field with the stream's own encodings: 64-bit key,
// title, remarks, state tree, pixmap, 64-bit time stamp, is-customised and (unless left out)
// is-uploaded.
struct OldFields
{
    quint64 key = 0;
    QString title;
    QString remarks;
    CVXVariantMapTree restore;
    QPixmap preview;
    quint64 stamp = 0;
    bool customized = false;
    bool uploaded = false;
};

inline QByteArray OldFormatBytes(const OldFields& f, bool withUploadedFlag)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << f.key;
    stream << f.title;
    stream << f.remarks;
    stream << f.restore;
    stream << f.preview;
    stream << f.stamp;
    stream << f.customized;
    if (withUploadedFlag)
        stream << f.uploaded;
    return bytes;
}

class LayoutFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(root.isValid());
        core::product_path::SetRootOverride(root.path());
        CVXPanelLayoutManager::ResetForTest();
    }

    void TearDown() override
    {
        // Pooled writes and queued usage reports must not outlive the temporary folder.
        WaitForFileWork();
        core::report::Flush();
        core::report::ResetForTest();
        CVXPanelLayoutManager::ResetForTest();
        core::environment::ResetForTest();
        core::langx::ResetForTest();
        core::CLoginState::Instance().Logout();
        core::product_path::ResetForTest();
    }

    QString UserFolder() const { return CVXPanelLayoutManager::Instance().GetUserFolder(); }
    QString TemplatesFolder() const
    {
        return core::product_path::GetAppFolder() + QStringLiteral("/LayoutTemplates");
    }
    QString UserFile(unsigned long long key) const
    {
        return QDir(UserFolder()).filePath(QString::number(key) + QStringLiteral(".vxl"));
    }

    static QStringList Titles()
    {
        QStringList titles;
        for (const CVXPanelLayoutTemplate& layout :
             CVXPanelLayoutManager::Instance().GetPanelLayoutDataListRef())
            titles << layout.title();
        return titles;
    }

    QTemporaryDir root;
};

} // namespace layout_test
