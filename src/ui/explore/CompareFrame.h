// CompareFrame.h - the window "Compare": what differs from another log, the base.
#pragma once

#include "explore/BaseLog.h"
#include "explore/lists/ComparedRows.h"
#include "ui/explore/ExploreFrame.h"
#include "ui/kit/ListedRows.h"

#include <QTimer>

#include <functional>
#include <memory>

class QTabWidget;

namespace carvelot {

class CCompareFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit CCompareFrame(CExploration& exploration);
    ~CCompareFrame() override;

    QList<QWidget*> WindowPanes() const override;
    // Asks for the base and compares with it. Cancelled, all stays as it is.
    void AskForBase();
    // The base is read beside the windows.
    void CompareWith(const QString& path);
    // Whether the comparison is still being made.
    bool IsWorking() const { return m_pWork != nullptr; }

signals:
    // A record of the base is to be shown, in a session of its own.
    void BaseWanted(const QString& path, RecordIndex record);

protected:
    void ShowResults() override;
    void ShowScope() override;
    void DropResults() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Side { Base, Log };
    struct CPair;

    template <class TRow> CRowList<TRow>* AddList(const QString& title, const QString& name);
    template <class TRow> void Open(CRowList<TRow>& list, int row, Side wanted);

    void ReadBase();
    void Compare();
    void ShowComparison(std::shared_ptr<const CPair> pair);
    void DropComparison();
    void Run(std::function<void()> work, std::function<void()> stop, std::function<void()> done);
    void EndWork();
    void Say(const QString& text);
    void ShowPercent(int percent);

    QString m_strBase;                    // its path; empty until one is chosen
    std::shared_ptr<CBaseLog> m_pBase;    // once it has been read
    std::shared_ptr<const CPair> m_pPair; // what is shown

    QLabel* m_pHead;
    QStackedWidget* m_pParts; // what there is to say, or the lists
    QLabel* m_pSaid;
    QProgressBar* m_pPercent;
    QTabWidget* m_pTabs;
    CRowList<ComparedFunctionRow>* m_pFunctions;
    CRowList<ComparedShapeRow>* m_pShapes;
    CRowList<ComparedFindingRow>* m_pFindings;
    QTimer m_percentTimer;
    std::unique_ptr<CBackgroundWork> m_pWork; // the last member: it ends first
};

} // namespace carvelot
