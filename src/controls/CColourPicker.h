#pragma once

#include "platform/graphics/Color.h"
#include "platform/graphics/Image.h"

#include <QAbstractButton>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

class CColourPopupWnd;
namespace gfx {
class Graphics;
}

// The button with which the user sets a colour or a fill. It shows the present choice as a
// swatch (solid, pattern, picture or gradient, or nothing when "Clear" was chosen) with an
// optional caption over it, and a click opens CColourPopupWnd below it: 40 named colours and
// the text buttons "Clear", the default text (when set), "More Colors..." and, when an effect
// handler is installed, "Picture/Gradient/Pattern".
//
// A panel connects SelEndOK for the final choice and, where it primes the picker from its
// model before the user picks (the background panel), DropDown. Both carry the colour and the
// control id given with SetControlId, so one slot can serve several pickers.
class CColourPicker : public QAbstractButton {
    Q_OBJECT

public:
    // The colour the default button stands for.
    static constexpr gfx::COLORREF CLR_DEFAULT = 0xFF000000;

    // The fill the effect button's dialogs choose, with the meaning the objects' appearance
    // fields give these values: fill kind 0 solid, 1 pattern, 2 picture, 3 path gradient,
    // 4 linear gradient. The colours keep their alpha (a gradient's transparency).
    struct EffectFill {
        int m_fillKind = 0;
        gfx::Color m_color1{255, 255, 255};
        gfx::Color m_color2{0, 0, 0};
        int m_gradientStyle = 2;
        int m_hatchStyle = 0;
        QString m_pictureFile;
        int m_wrapMode = 4;
        std::uint8_t m_gradientSwap = 0;
        std::uint8_t m_pictureScale = 1;
    };

    // Runs the fill dialogs on the picker's EffectFill (GetFill, then SetFill on OK) and
    // answers whether the user confirmed. Installed by the panel, since the dialogs live above
    // the controls.
    using EffectHandler = std::function<bool(CColourPicker& picker)>;

    explicit CColourPicker(QWidget* pParent = nullptr);

    // The chosen colour. Setting it also picks the caption's colour for contrast: white on a
    // colour whose red + green + blue is below 385, black otherwise.
    gfx::COLORREF GetColour() const { return m_crColourBk; }
    void SetColour(gfx::COLORREF crColour);
    // The caption's colour that SetColour chose.
    gfx::COLORREF GetTextColour() const { return m_crColourText; }

    // "Clear" sets this (and the colour to white); any other choice clears it. A picker with
    // the flag shows no fill.
    bool IsNoFill() const { return m_bNoFill; }
    void SetNoFill(bool bNoFill);

    const EffectFill& GetFill() const { return m_fill; }
    void SetFill(const EffectFill& fill);

    // The popup's first text button, choosing CLR_DEFAULT; empty (the default) for none.
    void SetDefaultText(const QString& strText);
    // The text of the button that opens the colour dialog; "More Colors..." by default.
    void SetCustomText(const QString& strText);
    // With a handler the popup offers "Picture/Gradient/Pattern"; an empty one removes it.
    void SetEffectHandler(EffectHandler handler);
    // The colour follows the mouse over the popup's cells (off by default); Escape or a click
    // outside still puts the colour from before back.
    void SetTrackSelection(bool bTrack) { m_bTrackSelection = bTrack; }

    bool IsPopupOpen() const { return m_bPopupOpen; }

    QSize sizeHint() const override;

signals:
    // The popup ended with a choice (a cell, "Clear", the colour dialog's or the effect
    // dialog's OK).
    void SelEndOK(gfx::COLORREF crColour, int nId);
    // The popup has just opened.
    void DropDown(gfx::COLORREF crColour, int nId);

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    friend class CColourPopupWnd;

    void OnClicked();
    void OnPopupSelChange(gfx::COLORREF crColour);
    void OnPopupSelEndOK(gfx::COLORREF crColour);
    void OnPopupSelEndCancel(gfx::COLORREF crColour);
    // The popup's own steps on the picker's fill when it ends on a button or a cell.
    void ChooseSolid();
    void ChooseClear();
    bool RunEffectHandler();
    void DrawFill(gfx::Graphics& graphics, const QRectF& rect);

    bool m_bPopupOpen = false;
    bool m_bTrackSelection = false;
    gfx::COLORREF m_crColourBk;
    gfx::COLORREF m_crColourText;
    bool m_bNoFill = false;
    EffectFill m_fill;
    QString m_strDefaultText;
    QString m_strCustomText;
    QString m_strEffectText;
    QString m_strClearText;
    EffectHandler m_effectHandler;
    // The picture of a picture fill, decoded once for its file.
    std::optional<std::pair<QString, gfx::Image>> m_picture;
};
