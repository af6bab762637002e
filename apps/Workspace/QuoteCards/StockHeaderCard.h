#pragma once

// CVXStockHeaderCard ("StockHeader"): the quote summary of the shown security (code, market,
// name, the last price with its change, the day's statistics) in a wide layout of two rows of
// four statistics or, below kWideWidth, a narrow one of four. It is also where the user changes
// the security: clicking the code, or typing on the focused card, opens a code field with
// completion over the universe; Enter on a known code or name raises the stock change (the box
// and its linkage group follow), an unknown one shows an inline "not found" hint and changes
// nothing; Escape or leaving the field closes it.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/StockHeaderModel.h"

#include "UIFrame/CardTypes.h"

#include <memory>

class QPainter;

class QLineEdit;

namespace vx_ws {

class CVXStockHeaderCard : public TplVXWorkspaceCard<CVXStockHeaderCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = quote_card_type::StockHeader;
    static constexpr int kWideWidth = 400;
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXStockHeaderCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXStockHeaderCard() override;

    // What the card shows now (empty texts while the security is unknown to the feed).
    StockHeaderView View() const;
    bool IsWideLayout() const;

    // The code field: the area that opens it, the field itself (null until first opened), and the
    // text of the "not found" hint (empty when none is shown).
    QRect CodeArea() const;
    QLineEdit* CodeEditor() const;
    bool IsCodeEditorOpen() const;
    QString NotFoundHint() const;
    // Opens the field with `text` typed into it.
    void OpenCodeEditor(const QString& text = QString());

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void CommitCodeEditor(const QString& text);
    void CloseCodeEditor();
    void PaintNotFoundHint(QPainter& p, int titleHeight);
    void PaintTitle(QPainter& p, const StockHeaderView& view, int titleHeight);
    int PaintPriceBlock(QPainter& p, const StockHeaderView& view, const QRect& body);
    void PaintStatistics(QPainter& p, const StockHeaderView& view, const QRect& body, int leftWidth);

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_ws
