// RawDataPane.h - the pane "Raw Data": the whole text of the line selected in the detail tree.
#pragma once

#include "ui/kit/DockablePane.h"

#include <QPlainTextEdit>

namespace carvelot {

class CRawDataPane : public CDockablePane {
    Q_OBJECT

public:
    CRawDataPane();

    // The whole content of the edit is replaced.
    void SetText(const QString& text);
    // Of a log in pieces, the piece that the text comes from.
    void SetPiece(const QString& path) { m_pEdit->setToolTip(path); }
    QPlainTextEdit& Edit() { return *m_pEdit; }
    QWidget* MainControl() const override { return m_pEdit; }

protected:
    void OnSize(int width, int height) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Copy();

    QPlainTextEdit* m_pEdit = nullptr; // the filter sees events before it is made
};

} // namespace carvelot
