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

QLabel* Link(const char* url, const QString& text) {
    auto* label = new QLabel(QStringLiteral("<a href=\"%1\">%2</a>").arg(QLatin1String(url), text));
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setOpenExternalLinks(true);
    label->setToolTip(QLatin1String(url));
    label->setAccessibleName(text);
    return label;
}

} // namespace

CAboutDlg::CAboutDlg() : QDialog(QApplication::activeWindow()) {
    setWindowTitle(tr("About Carvelot"));
    auto* picture = new QLabel;
    picture->setPixmap(ApplicationIcon().pixmap(QSize(64, 64), devicePixelRatio()));
    picture->setAlignment(Qt::AlignTop);

    auto* version = new QLabel(CCarvelotApp::VersionText());
    version->setObjectName(QStringLiteral("Version"));
    QFont bold = version->font();
    bold.setBold(true);
    version->setFont(bold);
    auto* bitness = new QLabel(CCarvelotApp::BitnessText());
    bitness->setObjectName(QStringLiteral("Bitness"));

    auto* text = new QVBoxLayout;
    text->setSpacing(4);
    text->addWidget(version);
    text->addWidget(bitness);
    text->addSpacing(12);
    text->addWidget(new QLabel(tr("Check out updates and other downloads at:")));
    text->addWidget(Link(CARVELOT_HOME_URL, QStringLiteral("Tamrisk")));
    text->addWidget(Link(CARVELOT_DOWNLOADS_URL, QStringLiteral("Carvelot")));
    text->addStretch();

    auto* top = new QHBoxLayout;
    top->setSpacing(18);
    top->addWidget(picture);
    top->addLayout(text, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    buttons->button(QDialogButtonBox::Ok)->setFocus();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 18, 18, 12);
    layout->setSpacing(14);
    layout->addLayout(top);
    layout->addWidget(buttons);
    // In the dialog already: else it would forget it when the focus passes another button.
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace carvelot
