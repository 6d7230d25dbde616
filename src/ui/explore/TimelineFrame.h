// TimelineFrame.h - Explore, Timeline: what ran when.
#pragma once

#include "ui/explore/ExploreFrame.h"
#include "ui/explore/TimelineWidget.h"

#include <memory>

class QLabel;
class QLineEdit;
class QScrollBar;

namespace carvelot {

class CTimelineFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit CTimelineFrame(CExploration& exploration);
    ~CTimelineFrame() override;

    IPicture* Picture() override;
    CTimelineWidget& Widget() { return *m_pWidget; }
    QLineEdit& SearchLine() { return *m_pSearch; }
    // Whether the picture is there: it is made beside the windows.
    bool IsShown() const { return m_pTimeline != nullptr; }

signals:
    void PictureCame();

protected:
    void ShowResults() override;
    void ShowScope() override;
    void ShowSelected() override;
    void DropResults() override;
    QString EmptyText() const override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void AddSearchBar(QWidget* body);
    void TakeTimeline(std::unique_ptr<CTimeline> timeline);
    void RefreshScrollBar();
    void KeepRowHeight() const;
    void OpenSearch();
    void CloseSearch();
    void GoToMatch(bool forward);
    void RunMenu(const QPoint& screenPoint);

    CTimelineWidget* m_pWidget;
    QScrollBar* m_pScrollBar;
    QWidget* m_pSearchBar;
    QLineEdit* m_pSearch;
    QLabel* m_pMatches;
    bool m_bNoMemory = false;
    std::unique_ptr<CTimeline> m_pTimeline;
    std::unique_ptr<CTimelinePicture> m_pPicture;
    std::unique_ptr<CBackgroundWork> m_pWork; // the last member: it ends first
};

} // namespace carvelot
