#include "ui/explore/CompareFrame.h"

#include "explore/Scope.h"
#include "explore/lists/ScopeNames.h"
#include "ui/explore/ListMenu.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>

#include <new>
#include <utility>

namespace carvelot {

namespace {

constexpr int kPercentInterval = 50; // milliseconds

// Enter on a row, with the keys that were held.
class CEnterKey final : public QObject {
public:
    CEnterKey(CListCtrl& list, std::function<void(int row, Qt::KeyboardModifiers)> open)
        : QObject(&list), m_list(list), m_fnOpen(std::move(open)) {
        list.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
            if (const int row = m_list.SelectedRow(); isEnter && row >= 0) {
                m_fnOpen(row, key.modifiers());
                return true;
            }
        }
        return QObject::eventFilter(object, event);
    }

private:
    CListCtrl& m_list;
    const std::function<void(int, Qt::KeyboardModifiers)> m_fnOpen;
};

QString NameOfFile(const QString& path) {
    const std::string bytes = PathOf(path);
    return PathToQString(std::string_view(bytes).substr(bytes.find_last_of("/\\") + 1));
}

} // namespace

// Both sides with what they are compared by. It must go before what is explored of the log.
struct CCompareFrame::CPair {
    struct CLog {
        const ExploredSession& m_explored;
        const std::vector<Finding>& m_findings;
        std::shared_ptr<const ExploredScope> m_pScope;
    };

    // `scopeName`: what the log's scope is called; empty for the whole log.
    CPair(std::shared_ptr<const CBaseLog> base, CLog log, const std::string& scopeName,
          const ClockRange& range, CExploreProgress& progress)
        : m_pBase(std::move(base)), m_log(std::move(log)),
          m_baseSelection(scopeName.empty() ? Selection()
                                            : FindScope(m_pBase->Explored().session, scopeName)),
          m_baseScope(ExploreIfThere(m_pBase->Explored(), m_baseSelection, range, &progress)),
          m_comparison(BaseSide(), LogSide()) {}

    ComparedSide BaseSide() const { return {m_pBase->Explored(), m_baseScope, m_pBase->Findings()}; }
    ComparedSide LogSide() const { return {m_log.m_explored, *m_log.m_pScope, m_log.m_findings}; }

    const std::shared_ptr<const CBaseLog> m_pBase;
    const CLog m_log;
    const std::optional<Selection> m_baseSelection; // none where the base lacks the scope
    const ExploredScope m_baseScope;
    const Comparison m_comparison;
};

CCompareFrame::CCompareFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("Compare")), m_pHead(PlainLabel()), m_pParts(new QStackedWidget),
      m_pSaid(PlainLabel()), m_pPercent(new QProgressBar), m_pTabs(new QTabWidget) {
    m_pHead->setAccessibleName(tr("Logs that are compared"));
    m_pHead->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* ask = new QPushButton(tr("Compare With..."));
    connect(ask, &QPushButton::clicked, this, &CCompareFrame::AskForBase);
    auto* head = new QHBoxLayout;
    head->setContentsMargins(6, 3, 6, 3);
    head->addWidget(m_pHead, 1);
    head->addWidget(ask);

    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    m_pSaid->setAlignment(Qt::AlignCenter);
    m_pSaid->setWordWrap(true);
    m_pPercent->setRange(0, 100);
    m_pPercent->setFixedWidth(240);
    m_pPercent->setAccessibleName(tr("Progress of comparing"));
    column->addStretch();
    column->addWidget(m_pSaid);
    column->addWidget(m_pPercent, 0, Qt::AlignCenter);
    column->addStretch();
    m_pParts->addWidget(page);
    m_pParts->addWidget(m_pTabs);
    m_pTabs->setDocumentMode(true);
    m_pFunctions = AddList<ComparedFunctionRow>(tr("Functions"), QStringLiteral("ComparedFunctions"));
    m_pShapes = AddList<ComparedShapeRow>(tr("Statements"), QStringLiteral("ComparedStatements"));
    m_pFindings = AddList<ComparedFindingRow>(tr("Findings"), QStringLiteral("ComparedFindings"));

    auto* body = new QWidget;
    auto* rows = new QVBoxLayout(body);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addLayout(head);
    rows->addWidget(m_pParts, 1);
    SetBody(body);

    m_percentTimer.setInterval(kPercentInterval);
    Say(tr("Choose the log to compare with."));
}

CCompareFrame::~CCompareFrame() { EndWork(); }

QList<QWidget*> CCompareFrame::WindowPanes() const {
    return {m_pParts->currentIndex() == 1 ? m_pTabs->currentWidget() : m_pParts};
}

template <class TRow> CRowList<TRow>* CCompareFrame::AddList(const QString& title, const QString& name) {
    auto* list = new CRowList<TRow>(title, nullptr);
    m_pTabs->addTab(list, title);
    // The columns of the base lead there, all others to the log.
    connect(list, &QAbstractItemView::doubleClicked, this, [this, list](const QModelIndex& index) {
        Open(*list, index.row(), TRow::IsOfBase(index.column()) ? Side::Base : Side::Log);
    });
    new CEnterKey(*list, [this, list](int row, Qt::KeyboardModifiers keys) {
        Open(*list, row, keys.testFlag(Qt::ControlModifier) ? Side::Base : Side::Log);
    });
    auto* menu = new CListMenu(*list, name);
    menu->m_fnAddEntries = [this, list](QMenu& entries, int row) {
        if (row < 0) {
            return;
        }
        const ComparedPresence in = list->RowAt(row).m_compared.in;
        const auto add = [&](const QString& text, bool isThere, Side side) {
            QAction* const entry = entries.addAction(text);
            entry->setEnabled(isThere);
            connect(entry, &QAction::triggered, this, [this, list, row, side] { Open(*list, row, side); });
        };
        add(tr("Show in Log"), in.inLog, Side::Log);
        add(tr("Show in Base"), in.inBase, Side::Base);
    };
    return list;
}

// On the wanted side, or on the only one that has it.
template <class TRow> void CCompareFrame::Open(CRowList<TRow>& list, int row, Side wanted) {
    if (m_pPair == nullptr || row >= list.Model().rowCount()) {
        return; // the rows went while a menu was up
    }
    const auto& compared = list.RowAt(row).m_compared;
    const bool isOnBase = wanted == Side::Base ? compared.in.inBase : !compared.in.inLog;
    const auto record = RecordOn(isOnBase ? m_pPair->BaseSide() : m_pPair->LogSide(), compared);
    if (!record) {
        return; // lines that were not read are no records
    }
    if (isOnBase) {
        emit BaseWanted(m_strBase, *record);
    } else {
        Exploration().ShowInSession(*record);
    }
}

void CCompareFrame::AskForBase() {
    const auto path = UserInterface().AskOpenFile(
        {EFiles::Logs, tr("Compare With"), QStringLiteral("log"), {}, QString::fromLatin1(kLogFilter)});
    if (path) {
        CompareWith(*path);
    }
}

void CCompareFrame::CompareWith(const QString& path) {
    m_strBase = path;
    if (Exploration().GetState() == CExploration::State::Done) {
        ReadBase();
    }
}

void CCompareFrame::ShowResults() { ReadBase(); }

// The base is read with the settings that the log was explored with, and with its dialects.
void CCompareFrame::ReadBase() {
    DropComparison();
    m_pBase.reset();
    if (m_strBase.isEmpty()) {
        return;
    }
    m_pHead->setText(tr("Base: %1     Log: %2").arg(NameOfFile(m_strBase), Exploration().LogName()));
    m_pHead->setToolTip(m_strBase);
    Say(tr("Reading %1. Esc ends it.").arg(NameOfFile(m_strBase)));
    ShowPercent(0);
    auto base = std::make_shared<CBaseLog>(PathOf(m_strBase), Exploration().Explored().settings,
                                           Exploration().Session().m_dialects);
    auto read = std::make_shared<bool>(false);
    m_percentTimer.disconnect(this);
    connect(&m_percentTimer, &QTimer::timeout, this, [this, base] { ShowPercent(base->Percent()); });
    m_percentTimer.start();
    Run([base, read] { *read = base->Load(); }, [base] { base->End(); },
        [this, base, read] {
            if (*read) {
                m_pBase = base;
                Compare();
            } else {
                Say(ToQString(base->Failure()));
            }
        });
}

void CCompareFrame::ShowScope() {
    if (m_pBase != nullptr) {
        Compare();
    }
}

// What is shown stays until the next comparison is there.
void CCompareFrame::Compare() {
    EndWork();
    if (Exploration().Scope() == nullptr) {
        return; // its counts come
    }
    auto pair = std::make_shared<std::shared_ptr<const CPair>>();
    auto progress = std::make_shared<CExploreProgress>(ExploreParts::kScope);
    Run(
        [pair, progress, base = m_pBase,
         log = CPair::CLog{Exploration().Explored(), Exploration().Findings(), Exploration().SharedScope()},
         name = ScopeName(Exploration().ScopeSelection()), range = Exploration().Range()] {
            try {
                *pair = std::make_shared<const CPair>(base, log, name, range, *progress);
            } catch (const ExploringEnded&) {
                // nobody waits for it any more
            } catch (const std::bad_alloc&) {
                // there is no pair, which says it
            }
        },
        [progress] { progress->End(); },
        [this, pair] {
            if (*pair != nullptr) {
                ShowComparison(std::move(*pair));
            } else {
                DropComparison();
                Say(tr("There is not enough memory to compare these logs."));
            }
        });
}

void CCompareFrame::ShowComparison(std::shared_ptr<const CPair> pair) {
    m_pFunctions->ShowRows(MakeComparedFunctionRows(pair->m_comparison));
    m_pShapes->ShowRows(MakeComparedShapeRows(pair->m_comparison));
    m_pFindings->ShowRows(MakeComparedFindingRows(pair->m_comparison));
    m_pPair = std::move(pair); // the rows of an earlier one have gone
    for (CListCtrl* const list : {&m_pFunctions->List(), &m_pShapes->List(), &m_pFindings->List()}) {
        list->setCurrentIndex(list->Model().index(0, 0));
    }
    QString head = tr("Base: %1     Log: %2").arg(NameOfFile(m_strBase), Exploration().LogName());
    if (!m_pPair->m_baseSelection) {
        head += tr("     The base has no %1.").arg(ToQString(ShownScope(Exploration().ScopeSelection())));
    }
    m_pHead->setText(head);
    const auto setTitle = [this](int tab, const QString& title, std::size_t rows) {
        m_pTabs->setTabText(tab, title.arg(rows));
    };
    setTitle(0, tr("Functions (%1)"), m_pPair->m_comparison.functions.size());
    setTitle(1, tr("Statements (%1)"), m_pPair->m_comparison.shapes.size());
    setTitle(2, tr("Findings (%1)"), m_pPair->m_comparison.findings.size());
    m_pParts->setCurrentIndex(1);
}

void CCompareFrame::DropComparison() {
    EndWork();
    m_pFunctions->ClearRows();
    m_pShapes->ClearRows();
    m_pFindings->ClearRows();
    m_pPair.reset();
}

void CCompareFrame::DropResults() {
    DropComparison();
    m_pBase.reset();
}

void CCompareFrame::Run(std::function<void()> work, std::function<void()> stop, std::function<void()> done) {
    EndWork();
    m_pWork =
        std::make_unique<CBackgroundWork>(std::move(work), std::move(stop), [this, done = std::move(done)] {
            // The call comes from inside the work that is done.
            m_pWork.release()->deleteLater();
            EndWork();
            done();
        });
}

void CCompareFrame::EndWork() {
    m_pWork.reset();
    m_percentTimer.stop();
    ShowPercent(-1);
}

void CCompareFrame::Say(const QString& text) {
    m_pSaid->setText(text);
    m_pParts->setCurrentIndex(0);
}

void CCompareFrame::ShowPercent(int percent) {
    m_pPercent->setVisible(percent >= 0);
    m_pPercent->setValue(std::max(0, percent));
    if (CMainWindow* const main = MainWindow()) {
        main->ShowProgress(percent);
    }
}

void CCompareFrame::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_pBase == nullptr && IsWorking()) {
        event->accept();
        EndWork();
        Say(tr("Comparing was ended."));
        return;
    }
    CExploreFrame::keyPressEvent(event);
}

} // namespace carvelot
