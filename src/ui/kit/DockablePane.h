// DockablePane.h - what all panes of the main frame share.
#pragma once

#include <QDockWidget>
#include <QFont>
#include <QLineEdit>

#include <functional>

class QAbstractButton;

namespace carvelot {

// The font whose cells are m_nFontHeight high, as the settings now stand. A negative height is that of the
// characters, 0 the usual size.
QFont SettingsFont();
QFont CellFont(const QString& face, int height);

// A pane that docks at any side, floats, closes, and stands in the View menu. Its parts are laid out by
// OnSize.
class CDockablePane : public QDockWidget {
    Q_OBJECT

public:
    // name is what a stored layout knows the pane by.
    CDockablePane(const QString& title, const QString& name, QSize initial);

    // The read-only caption edit, on panes that have one.
    void SetCaption(const QString& text);
    QString GetCaption() const;
    // Does it show, and not another pane's tab that it shares its place with?
    bool IsInFront() const;
    // The part that F6 goes to.
    virtual QWidget* MainControl() const = 0;

    // What the pin in the title does; without it there is no pin.
    std::function<void()> m_fnPin;
    // The pin stands upright while the pane is docked and lies while it is folded away.
    void SetPinned(bool pinned);
    bool IsPinned() const { return m_bPinned; }
    QAbstractButton* PinButton() const { return m_pPin; }

protected:
    static constexpr int kCaptionHeight = 20;
    static constexpr int kListTop = 22;

    void AddCaption();
    QWidget* Client() const { return m_pClient; }
    // Lays the parts out; runs at every change of size.
    virtual void OnSize(int width, int height) = 0;
    // The caption, if there is one, on top: says where the part below begins.
    int LayOutCaption(int width);
    // Has an edit control offer the "Edit" menu of the main frame.
    void UseEditMenu(QWidget* edit);

    bool eventFilter(QObject* object, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void ShowParts();
    QAbstractButton* TitleButton(const char* name) const;
    void PlacePin();
    void PlaceFloating();
    QRect GlobalRect() const;

    QAbstractButton* m_pPin;
    bool m_bPinned = true;
    QRect m_docked; // where it stood before a button or a double click made it float
    QWidget* m_pClient;
    QLineEdit* m_pCaption = nullptr;
};

} // namespace carvelot
