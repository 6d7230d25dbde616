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
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Polish && object->inherits("QTipLabel")) {
            static_cast<QLabel*>(object)->setTextFormat(Qt::PlainText);
        }
        return false;
    }
};

} // namespace

QString PlainCaption(QString text) {
    std::ranges::replace_if(
        text,
        [](QChar c) {
            return c == u'\t' || c == u'\n' || c == u'\r' || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator;
        },
        QChar(u' '));
    return text.replace(u'&', QLatin1String("&&"));
}

QString PlainTitle(QString text) { return text.replace(QLatin1String("[*]"), QLatin1String("[*][*]")); }

QLabel* PlainLabel(const QString& text) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

void ShowTipsAsPlainText() {
    static QPointer<QObject> tips;
    if (tips != nullptr) {
        return;
    }
    tips = new CPlainTips(qApp);
    qApp->installEventFilter(tips);
}

} // namespace carvelot
