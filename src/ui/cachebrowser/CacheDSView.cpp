#include "ui/cachebrowser/CacheDSView.h"

#include "ui/kit/ListCtrl.h"
#include "ui/kit/Text.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace carvelot {

namespace {

constexpr int kLeft = 2;
constexpr int kGroupTop = 1;
constexpr int kGroupHeight = 58;
constexpr int kListTop = 62;

} // namespace

CCacheDSView::CCacheDSView(CCacheDoc& cache)
    : m_cache(cache), m_pGroup(new QGroupBox(this)), m_pProcess(new QLineEdit), m_pHandle(new QLineEdit),
      m_pList(new CListCtrl(SpecsOf(MemberColumns()), tr("Cache columns"), this)) {
    m_cache.m_pDSView = this;
    auto* layout = new QHBoxLayout(m_pGroup);
    const auto add = [&](const QString& label, const char* name, QLineEdit* edit, int stretch) {
        auto* labelWidget = new QLabel(label);
        labelWidget->setBuddy(edit);
        edit->setObjectName(QLatin1String(name));
        edit->setAccessibleName(label);
        edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * 7);
        layout->addWidget(labelWidget);
        layout->addWidget(edit, stretch);
    };
    add(tr("Process"), "Process", m_pProcess, 2);
    add(tr("Handle"), "Handle", m_pHandle, 3);
    m_pList->setObjectName(QStringLiteral("Members"));
    m_cache.m_cacheDS.FillMemberList(*this);
    m_pHandle->setText(ToQString(m_cache.m_strHandle));
    m_pProcess->setText(QString::number(static_cast<std::int32_t>(m_cache.m_processId)));
    for (QLineEdit* edit : {m_pProcess, m_pHandle}) {
        edit->setCursorPosition(0);
        edit->setAcceptDrops(false); // a log dropped here opens as everywhere
    }
    setTabOrder(m_pProcess, m_pHandle);
    setTabOrder(m_pHandle, m_pList);
    setFocusProxy(m_pList);
}

CCacheDSView::~CCacheDSView() {
    if (m_cache.m_pDSView == this) {
        m_cache.m_pDSView = nullptr;
    }
    m_pList->Fill(nullptr); // the rows go before the list
}

std::string CCacheDSView::ProcessText() const { return ToUtf8(m_pProcess->text()); }

std::string CCacheDSView::HandleText() const { return ToUtf8(m_pHandle->text()); }

void CCacheDSView::Fill(std::vector<std::shared_ptr<CMember>> rows) {
    m_pList->Model().BeginFill();
    m_rows.m_listRows = std::move(rows);
    m_pList->Fill(&m_rows);
}

void CCacheDSView::LayOut() {
    // With a large font the edits need more.
    const int group = std::max(kGroupHeight, m_pGroup->minimumSizeHint().height());
    const int top = kListTop - kGroupHeight + group;
    m_pGroup->setGeometry(kLeft, kGroupTop, std::max(width() - kLeft, 0), group);
    m_pList->setGeometry(kLeft, top, std::max(width() - kLeft, 0), std::max(height() - top, 0));
}

void CCacheDSView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    LayOut();
}

void CCacheDSView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        LayOut();
    }
}

} // namespace carvelot
