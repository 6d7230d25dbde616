#include "ui/app/AboutDlg.h"

#include "ui/app/CarvelotApp.h"
#include "ui/kit/Icons.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

// The maker's pages; a build for distribution sets its own.
#ifndef CARVELOT_HOME_URL
#define CARVELOT_HOME_URL "https://tamrisk.example/"
#endif
#ifndef CARVELOT_DOWNLOADS_URL
#define CARVELOT_DOWNLOADS_URL "https://tamrisk.example/carvelot"
#endif

namespace carvelot {

namespace {

QLabel* Link(const char* pszUrl, const QString& strText) {
    auto* pLabel = new QLabel(QStringLiteral("<a href=\"%1\">%2</a>").arg(QLatin1String(pszUrl), strText));
    pLabel->setTextInteractionFlags(Qt::TextBrowserInteraction);
    pLabel->setOpenExternalLinks(true);
    pLabel->setToolTip(QLatin1String(pszUrl));
    pLabel->setAccessibleName(strText);
    return pLabel;
}

} // namespace

CAboutDlg::CAboutDlg() : QDialog(QApplication::activeWindow()) {
    setWindowTitle(tr("About Carvelot"));
    auto* pPicture = new QLabel;
    pPicture->setPixmap(ApplicationIcon().pixmap(QSize(64, 64), devicePixelRatio()));
    pPicture->setAlignment(Qt::AlignTop);

    auto* pVersion = new QLabel(CCarvelotApp::VersionText());
    pVersion->setObjectName(QStringLiteral("Version"));
    QFont bold = pVersion->font();
    bold.setBold(true);
    pVersion->setFont(bold);
    auto* pBitness = new QLabel(CCarvelotApp::BitnessText());
    pBitness->setObjectName(QStringLiteral("Bitness"));

    auto* pText = new QVBoxLayout;
    pText->setSpacing(4);
    pText->addWidget(pVersion);
    pText->addWidget(pBitness);
    pText->addSpacing(12);
    pText->addWidget(new QLabel(tr("Check out updates and other downloads at:")));
    pText->addWidget(Link(CARVELOT_HOME_URL, QStringLiteral("Tamrisk")));
    pText->addWidget(Link(CARVELOT_DOWNLOADS_URL, QStringLiteral("Carvelot")));
    pText->addStretch();

    auto* pTop = new QHBoxLayout;
    pTop->setSpacing(18);
    pTop->addWidget(pPicture);
    pTop->addLayout(pText, 1);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    pButtons->button(QDialogButtonBox::Ok)->setFocus();

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(18, 18, 18, 12);
    pLayout->setSpacing(14);
    pLayout->addLayout(pTop);
    pLayout->addWidget(pButtons);
    // In the dialog already: else it would forget it when the focus passes another button.
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
    pLayout->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace carvelot
