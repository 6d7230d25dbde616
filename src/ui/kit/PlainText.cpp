#include "ui/kit/PlainText.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPointer>

#include <algorithm>

namespace carvelot {

namespace {

// The toolkit's tip is a label that guesses whether its text is markup. It is polished before it gets its
// first text, and keeps its format for later ones.
class CPlainTips final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override {
        if (pEvent->type() == QEvent::Polish && pObject->inherits("QTipLabel"))
            static_cast<QLabel*>(pObject)->setTextFormat(Qt::PlainText);
        return false;
    }
};

} // namespace

QString PlainCaption(QString strText) {
    std::ranges::replace_if(
        strText,
        [](QChar c) {
            return c == u'\t' || c == u'\n' || c == u'\r' || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator;
        },
        QChar(u' '));
    return strText.replace(u'&', QLatin1String("&&"));
}

QString PlainTitle(QString strText) { return strText.replace(QLatin1String("[*]"), QLatin1String("[*][*]")); }

QLabel* PlainLabel(const QString& strText) {
    auto* pLabel = new QLabel;
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setText(strText);
    return pLabel;
}

void ShowTipsAsPlainText() {
    static QPointer<QObject> pTips;
    if (pTips != nullptr)
        return;
    pTips = new CPlainTips(qApp);
    qApp->installEventFilter(pTips);
}

} // namespace carvelot
