// FlameGraphFrame.h - the window "Flame Graph": the tree of all calls as a picture.
#pragma once

#include "ui/explore/ExploreFrame.h"
#include "ui/explore/FlameView.h"

#include <memory>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace carvelot {

class CFlameGraphFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit CFlameGraphFrame(CExploration& exploration);
    ~CFlameGraphFrame() override;

    QList<QWidget*> WindowPanes() const override;
    IPicture* Picture() override { return m_pPicture.get(); }

protected:
    void ShowResults() override { ShowScope(); }
    void ShowScope() override;
    void ShowSelected() override;
    void DropResults() override;
    QString EmptyText() const override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QWidget* MakeTools();
    void Search();
    void RefreshPath();

    std::shared_ptr<const ExploredScope> m_pShown; // what the picture is made from
    std::unique_ptr<CFlameLayout> m_pLayout;
    std::unique_ptr<CFlamePicture> m_pPicture;
    QWidget* m_pPath = nullptr;
    QHBoxLayout* m_pPathRow = nullptr;
    QLineEdit* m_pSearch = nullptr;
    QLabel* m_pHits = nullptr;
    QComboBox* m_pColoring = nullptr;
    CFlameView* m_pView = nullptr;
};

} // namespace carvelot
