#include "ui/kit/WaitBox.h"

#include "ui/kit/MainWindow.h"
#include "ui/kit/PlainText.h"

#include <QApplication>
#include <QProgressDialog>

#include <algorithm>

namespace carvelot {

namespace {

constexpr std::int64_t kBetweenMoves = 50; // milliseconds
constexpr int kSteps = 1000;
// In characters.
constexpr int kNarrowest = 50;
constexpr int kWidest = 100;

} // namespace

CWaitBox::CWaitBox(const QString& text) : m_strText(text) { m_since.start(); }

CWaitBox::~CWaitBox() {
    if (m_pBox != nullptr) {
        QApplication::restoreOverrideCursor();
    }
}

void CWaitBox::ComeUp() {
    // It can be clicked at although the program waits.
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    m_pBox = std::make_unique<QProgressDialog>(MainWindow());
    m_pBox->setWindowTitle(QStringLiteral("Carvelot"));
    // Paths may be as long as they like.
    const QFontMetrics metrics = m_pBox->fontMetrics();
    m_pBox->setLabel(
        PlainLabel(metrics.elidedText(m_strText, Qt::ElideMiddle, kWidest * metrics.averageCharWidth())));
    m_pBox->setMinimumWidth(kNarrowest * metrics.averageCharWidth());
    m_pBox->setCancelButtonText(QProgressDialog::tr("Cancel"));
    m_pBox->setWindowModality(Qt::ApplicationModal);
    m_pBox->setAutoReset(false);
    m_pBox->setMinimumDuration(0);
    m_pBox->setMaximum(kSteps);
    m_pBox->show();
}

bool CWaitBox::GoOn(std::uint64_t done, std::uint64_t total) {
    const std::int64_t now = m_since.elapsed();
    if (m_pBox == nullptr ? now < s_nPatience : now - m_nShown < kBetweenMoves) {
        return true;
    }
    if (m_pBox == nullptr) {
        ComeUp();
    }
    m_nShown = now;
    m_pBox->setMaximum(total == 0 ? 0 : kSteps);
    m_pBox->setValue(total == 0 ? 0 : static_cast<int>(std::min(done, total) * kSteps / total));
    // A bar that has not moved takes nothing of what the user does.
    QApplication::processEvents();
    // Esc closes it as any dialog where its own key does not take it.
    return m_pBox->isVisible() && !m_pBox->wasCanceled();
}

} // namespace carvelot
