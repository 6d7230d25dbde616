#include "ui/app/StatusBar.h"

#include "ui/kit/PlainText.h"

#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

namespace carvelot {

CStatusBar::CStatusBar(const QString& bitnessText)
    : m_pProgress(new QProgressBar), m_pRange(PlainLabel()), m_pFollowing(PlainLabel()),
      m_pUnread(new QToolButton) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // a long text makes the window no wider
    m_pProgress->setRange(0, 100);
    m_pProgress->setMaximumWidth(180);
    m_pProgress->setTextVisible(false);
    m_pProgress->setAccessibleName(tr("Progress of the load"));
    m_pProgress->hide();
    auto* bitness = new QLabel(bitnessText);
    bitness->setObjectName(QStringLiteral("Bitness"));
    bitness->setAccessibleName(tr("Build"));
    bitness->setContentsMargins(10, 0, 10, 0);
    m_pRange->setAccessibleName(tr("Range"));
    m_pRange->hide();
    m_pFollowing->setAccessibleName(tr("Follow"));
    m_pFollowing->setContentsMargins(10, 0, 10, 0);
    m_pFollowing->hide();
    m_pUnread->setText(tr("Many lines are not read"));
    m_pUnread->setToolTip(tr("More than a tenth of the lines became no record. Click to see why."));
    m_pUnread->setAutoRaise(true);
    m_pUnread->hide();
    addPermanentWidget(m_pFollowing);
    addPermanentWidget(m_pUnread);
    addPermanentWidget(m_pRange);
    addPermanentWidget(m_pProgress);
    addPermanentWidget(bitness);
    connect(this, &QStatusBar::messageChanged, this, [this](const QString& text) {
        if (text != toolTip()) {
            setToolTip({});
        }
    });
}

void CStatusBar::ShowRange(const QString& text) {
    m_pRange->setText(text);
    m_pRange->setVisible(!text.isEmpty());
}

void CStatusBar::ShowFollowing(const QString& text, const QString& log) {
    m_pFollowing->setText(text);
    m_pFollowing->setToolTip(log);
    m_pFollowing->setVisible(!text.isEmpty());
}

void CStatusBar::Say(const QString& text) {
    showMessage(text);
    setToolTip(text); // whole, however narrow the window is
}

void CStatusBar::ShowUnread(bool many) { m_pUnread->setVisible(many); }

void CStatusBar::ShowProgress(int percent) {
    m_pProgress->setVisible(percent >= 0);
    if (percent < 0 || m_pProgress->value() == percent) {
        return;
    }
    m_pProgress->setValue(percent);
    repaint();
}

} // namespace carvelot
