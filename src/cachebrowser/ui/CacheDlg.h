// CacheDlg.h - "Define Cache Structure": what a row of a cache looks like.
#pragma once

#include "cachebrowser/CacheDoc.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace carvelot {

class CListCtrl;

// Works on a copy of the document's structure; OK puts it in the place of the document's.
class CCacheDlg : public QDialog, private IMemberList {
    Q_OBJECT

public:
    explicit CCacheDlg(CCacheDoc& document);
    ~CCacheDlg() override;

private:
    void Fill(std::vector<std::shared_ptr<CMember>> listRows) override;
    void OnAdd();
    void OnParse();
    void OnRemove();
    void OnLoad();
    void OnSave();
    void OnOk();
    // The Array box, or nothing after a message when it does not hold an allowed number.
    bool ReadArraySize();

    CCacheDoc* m_pDoc;
    CCacheDS m_workDS;
    CMemberRows m_rows;
    std::int32_t m_nArraySize = 1;
    QLineEdit* m_strCacheName;
    QLineEdit* m_strInstance;
    QLineEdit* m_strColumnName;
    QComboBox* m_cmbType;
    QLineEdit* m_editArraySize;
    CListCtrl* m_lstColumns;
    QPlainTextEdit* m_editStructure;
};

} // namespace carvelot
