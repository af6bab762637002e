#include "apps/Workspace/QuoteCards/StockHeaderCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStringListModel>

#include <algorithm>

namespace vx_ws {

using card_paint::PixelFont;

namespace {

constexpr int kMargin = 8;

} // namespace

struct CVXStockHeaderCard::Impl
{
    QLineEdit* editor = nullptr;
    QCompleter* completer = nullptr;
    QStringListModel* completionModel = nullptr;
    QString notFound;
    // The editor is closed by Enter and by focus loss; the second of the two must do nothing.
    bool committing = false;

    int TitleHeight(const QSize& size) const { return std::clamp(size.height() * 30 / 100, 20, 28); }
};

CVXCardBaseStyle CVXStockHeaderCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236231, "报价摘要"), QSize(480, 96), QSize(240, 64),
                         QSize(5000, 200));
}

CVXStockHeaderCard::CVXStockHeaderCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent), d(std::make_unique<Impl>())
{
    // Typing on the card starts a code search, so the card takes focus when clicked.
    setFocusPolicy(Qt::StrongFocus);
}

CVXStockHeaderCard::~CVXStockHeaderCard()
{
    // The completer's popup is a top-level window; it goes with the completer.
    if (d->editor)
        d->editor->removeEventFilter(this);
}

StockHeaderView CVXStockHeaderCard::View() const
{
    vx_md::CVXSimMarketData* md = MarketData();
    const unsigned long id = ShownStockID();
    if (!md || !md->Contains(id))
        return {};
    return BuildStockHeaderView(md->GetSecurity(id), md->GetQuote(id), IsWideLayout());
}

bool CVXStockHeaderCard::IsWideLayout() const
{
    return width() >= kWideWidth;
}

QRect CVXStockHeaderCard::CodeArea() const
{
    const int titleHeight = d->TitleHeight(size());
    return QRect(0, 0, std::min(width(), 260), titleHeight);
}

QLineEdit* CVXStockHeaderCard::CodeEditor() const
{
    return d->editor;
}

bool CVXStockHeaderCard::IsCodeEditorOpen() const
{
    return d->editor && d->editor->isVisible();
}

QString CVXStockHeaderCard::NotFoundHint() const
{
    return IsCodeEditorOpen() && !d->notFound.isEmpty() ? core::langx::tr(970111, "未找到该代码") : QString();
}

void CVXStockHeaderCard::OpenCodeEditor(const QString& text)
{
    if (!d->editor) {
        d->editor = new QLineEdit(this);
        d->editor->setPlaceholderText(core::langx::tr(970112, "代码/名称"));
        d->editor->installEventFilter(this);
        d->completionModel = new QStringListModel(d->editor);
        d->completer = new QCompleter(d->completionModel, d->editor);
        d->completer->setCaseSensitivity(Qt::CaseInsensitive);
        d->completer->setFilterMode(Qt::MatchContains);
        d->completer->setMaxVisibleItems(8);
        d->editor->setCompleter(d->completer);
        vx_ui_res::Provider::Instance().FollowTheme(d->editor);
        vx_ui_res::Provider::Instance().FollowTheme(d->completer->popup());
        connect(d->editor, &QLineEdit::returnPressed, this, [this] { CommitCodeEditor(d->editor->text()); });
        connect(d->completer, QOverload<const QString&>::of(&QCompleter::activated), this,
                [this](const QString& entry) { CommitCodeEditor(entry); });
        connect(d->editor, &QLineEdit::textEdited, this, [this] {
            if (!d->notFound.isEmpty()) {
                d->notFound.clear();
                update();
            }
        });
    }
    vx_md::CVXSimMarketData* md = MarketData();
    d->completionModel->setStringList(md ? CompletionEntries(md->Securities()) : QStringList());
    d->editor->setFont(PixelFont(font(), 13));
    const int titleHeight = d->TitleHeight(size());
    const int editorHeight = std::min(22, titleHeight);
    d->editor->setGeometry(4, (titleHeight - editorHeight) / 2, std::clamp(width() * 45 / 100, 110, 200),
                           editorHeight);
    d->notFound.clear();
    d->editor->setText(text);
    d->editor->show();
    d->editor->setFocus(Qt::OtherFocusReason);
    if (!text.isEmpty())
        d->completer->complete();
    update();
}

void CVXStockHeaderCard::CommitCodeEditor(const QString& text)
{
    if (!IsCodeEditorOpen() || d->committing)
        return;
    vx_md::CVXSimMarketData* md = MarketData();
    const unsigned long id = md ? FindSecurityByInput(md->Securities(), text) : 0;
    if (id == 0) {
        // Nothing changes: the field stays open with the text, so the user can correct it.
        d->notFound = text.trimmed();
        if (d->notFound.isEmpty()) {
            CloseCodeEditor();
            return;
        }
        if (d->completer->popup())
            d->completer->popup()->hide();
        update();
        return;
    }
    CloseCodeEditor();
    RaiseStockChange(id);
}

void CVXStockHeaderCard::CloseCodeEditor()
{
    if (!d->editor)
        return;
    d->committing = true;
    d->notFound.clear();
    if (d->completer->popup())
        d->completer->popup()->hide();
    const bool hadFocus = d->editor->hasFocus();
    d->editor->hide();
    d->editor->clear();
    if (hadFocus)
        setFocus(Qt::OtherFocusReason);
    d->committing = false;
    update();
}

void CVXStockHeaderCard::resizeEvent(QResizeEvent* event)
{
    CVXWorkspaceCardBase::resizeEvent(event);
    if (IsCodeEditorOpen()) {
        const int titleHeight = d->TitleHeight(size());
        const int editorHeight = std::min(22, titleHeight);
        d->editor->setGeometry(4, (titleHeight - editorHeight) / 2, std::clamp(width() * 45 / 100, 110, 200),
                               editorHeight);
    }
}

void CVXStockHeaderCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && CodeArea().contains(event->pos())) {
        OpenCodeEditor();
        event->accept();
        return;
    }
    CVXWorkspaceCardBase::mousePressEvent(event);
}

void CVXStockHeaderCard::keyPressEvent(QKeyEvent* event)
{
    const QString text = event->text();
    if (!IsCodeEditorOpen() && text.size() == 1 && text.at(0).isLetterOrNumber() &&
        !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        OpenCodeEditor(text);
        event->accept();
        return;
    }
    CVXWorkspaceCardBase::keyPressEvent(event);
}

bool CVXStockHeaderCard::eventFilter(QObject* watched, QEvent* event)
{
    if (d->editor && watched == d->editor) {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            CloseCodeEditor();
            return true;
        }
        // The completion popup takes the focus for itself while it is open; that is not leaving.
        if (event->type() == QEvent::FocusOut &&
            static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason && !d->committing) {
            CloseCodeEditor();
        }
    }
    return CVXWorkspaceCardBase::eventFilter(watched, event);
}

void CVXStockHeaderCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter p(this);
    p.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const StockHeaderView view = View();
    const int titleHeight = d->TitleHeight(size());

    if (view.code.isEmpty()) {
        p.setPen(ThemeColor("ct_text_secondary"));
        p.setFont(PixelFont(font(), 12));
        p.drawText(rect(), Qt::AlignCenter, core::langx::tr(970110, "暂无数据"));
        return;
    }
    if (IsCodeEditorOpen())
        PaintNotFoundHint(p, titleHeight);
    else
        PaintTitle(p, view, titleHeight);
    const QRect body(0, titleHeight, width(), height() - titleHeight);
    const int leftWidth = PaintPriceBlock(p, view, body);
    PaintStatistics(p, view, body, leftWidth);
}

// Next to the open code field: why the typed code showed nothing.
void CVXStockHeaderCard::PaintNotFoundHint(QPainter& p, int titleHeight)
{
    if (d->notFound.isEmpty())
        return;
    const QRect editor = d->editor->geometry();
    p.setFont(PixelFont(font(), 12));
    p.setPen(ThemeColor("ck_orange500"));
    p.drawText(QRect(editor.right() + 8, 0, width() - editor.right() - 12, titleHeight),
               Qt::AlignVCenter | Qt::AlignLeft,
               p.fontMetrics().elidedText(NotFoundHint(), Qt::ElideRight, width() - editor.right() - 12));
}

// Code, market badge, name, and the time of the last trade when the name leaves room for it.
void CVXStockHeaderCard::PaintTitle(QPainter& p, const StockHeaderView& view, int titleHeight)
{
    int x = kMargin;
    const QFont codeFont = PixelFont(font(), 13, true);
    p.setFont(codeFont);
    p.setPen(ThemeColor("ct_text_primary"));
    const int codeWidth = QFontMetrics(codeFont).horizontalAdvance(view.code);
    p.drawText(QRect(x, 0, codeWidth + 2, titleHeight), Qt::AlignVCenter | Qt::AlignLeft, view.code);
    x += codeWidth + 6;
    const QFont badgeFont = PixelFont(font(), 9, true);
    p.setFont(badgeFont);
    const int badgeWidth = QFontMetrics(badgeFont).horizontalAdvance(view.market) + 6;
    const QRect badge(x, titleHeight / 2 - 6, badgeWidth, 12);
    p.fillRect(badge, ThemeColor("ct_bg_tertiary"));
    p.setPen(ThemeColor("ct_text_secondary"));
    p.drawText(badge, Qt::AlignCenter, view.market);
    x += badgeWidth + 6;
    const QFont nameFont = PixelFont(font(), 12);
    p.setFont(nameFont);
    const int timeWidth = QFontMetrics(nameFont).horizontalAdvance(view.time) + kMargin;
    const int nameWidth = QFontMetrics(nameFont).horizontalAdvance(view.name);
    const bool timeFits = x + nameWidth + 12 + timeWidth <= width() - kMargin;
    const int nameRoom = width() - x - kMargin - (timeFits ? timeWidth : 0);
    p.drawText(QRect(x, 0, nameRoom, titleHeight), Qt::AlignVCenter | Qt::AlignLeft,
               QFontMetrics(nameFont).elidedText(view.name, Qt::ElideRight, nameRoom));
    if (timeFits) {
        p.drawText(QRect(0, 0, width() - kMargin, titleHeight), Qt::AlignVCenter | Qt::AlignRight, view.time);
    }
}

// The last price over its change; returns the width the block takes from the left edge.
int CVXStockHeaderCard::PaintPriceBlock(QPainter& p, const StockHeaderView& view, const QRect& body)
{
    const QColor changeColor = ChangeColor(view.direction);
    const int priceSize = std::clamp(body.height() * 46 / 100, 16, 28);
    const QFont priceFont = PixelFont(font(), priceSize, true);
    const QFont changeFont = PixelFont(font(), std::clamp(priceSize / 2, 11, 13));
    const QString changeText = view.change + QStringLiteral("  ") + view.changePercent;
    // The price block takes what its texts need; the statistics get the rest.
    const int blockWidth = std::max(QFontMetrics(priceFont).horizontalAdvance(view.last),
                                    QFontMetrics(changeFont).horizontalAdvance(changeText)) +
                           kMargin + 8;
    const int leftWidth = IsWideLayout() ? std::max(blockWidth, width() * 28 / 100) : blockWidth;
    const int priceHeight = QFontMetrics(priceFont).height();
    const int changeHeight = QFontMetrics(changeFont).height();
    const int blockTop = body.top() + std::max(0, (body.height() - priceHeight - changeHeight) / 2);
    p.setPen(changeColor);
    p.setFont(priceFont);
    p.drawText(QRect(kMargin, blockTop, leftWidth - kMargin, priceHeight), Qt::AlignLeft | Qt::AlignVCenter,
               view.last);
    p.setFont(changeFont);
    p.drawText(QRect(kMargin, blockTop + priceHeight, leftWidth - kMargin, changeHeight),
               Qt::AlignLeft | Qt::AlignVCenter, changeText);
    return leftWidth;
}

// Two rows of statistics right of the price block; labels left, values right-aligned in each cell.
void CVXStockHeaderCard::PaintStatistics(QPainter& p, const StockHeaderView& view, const QRect& body,
                                         int leftWidth)
{
    const bool wide = IsWideLayout();
    const QColor textPrimary = ThemeColor("ct_text_primary");
    const QColor textSecondary = ThemeColor("ct_text_secondary");
    const int columns = wide ? 4 : 2;
    const int gridLeft = leftWidth + 4;
    const int cellGap = wide ? 10 : 6;
    const int cellWidth = (width() - gridLeft - kMargin + cellGap) / columns;
    const int rowHeight = std::min(22, body.height() / 2);
    const int gridTop = body.top() + (body.height() - rowHeight * 2) / 2;
    const QFont labelFont = PixelFont(font(), 11);
    const QFont valueFont = PixelFont(font(), 12);
    for (int i = 0; i < static_cast<int>(view.stats.size()); ++i) {
        const StockHeaderStat& stat = view.stats[i];
        const QRect cell(gridLeft + (i % columns) * cellWidth, gridTop + (i / columns) * rowHeight,
                         cellWidth - cellGap, rowHeight);
        // The value always shows in full; the label gives way (a smaller value font first, then
        // an elided label) when a long translation meets a narrow cell.
        QFont cellValueFont = valueFont;
        int valueWidth = QFontMetrics(cellValueFont).horizontalAdvance(stat.value);
        const int labelWidth = QFontMetrics(labelFont).horizontalAdvance(stat.label);
        if (labelWidth + valueWidth + 6 > cell.width()) {
            cellValueFont.setPixelSize(11);
            valueWidth = QFontMetrics(cellValueFont).horizontalAdvance(stat.value);
        }
        p.setFont(labelFont);
        p.setPen(textSecondary);
        p.drawText(
            cell, Qt::AlignLeft | Qt::AlignVCenter,
            QFontMetrics(labelFont).elidedText(stat.label, Qt::ElideRight, cell.width() - valueWidth - 6));
        p.setFont(cellValueFont);
        p.setPen(stat.neutral ? textPrimary : ChangeColor(stat.direction));
        p.drawText(cell, Qt::AlignRight | Qt::AlignVCenter, stat.value);
    }
    p.setPen(ThemeColor("ct_divider"));
    p.drawLine(gridLeft - 6, gridTop + 2, gridLeft - 6, gridTop + rowHeight * 2 - 2);
}

} // namespace vx_ws
