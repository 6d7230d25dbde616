// CacheDlg.h - "Define Cache Structure": what a row of a cache looks like.
#pragma once

#include "cachebrowser/CacheDoc.h"

#include <QDialog>

#include <memory>

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
    void Fill(std::vector<std::shared_ptr<CMember>> rows) override;
    void OnAdd();
    void OnParse();
    void OnRemove();
    void OnLoad();
    void OnSave();
    void OnOk();
    // Takes over what the controls for a new column say; false after a message when the Array box does not
    // hold an allowed number.
    bool UpdateData();

    CCacheDoc* m_pDoc;
    std::unique_ptr<CCacheDS> m_pWorkDS;
    CMemberRows m_rows;
    QString m_strColumnName;
    QString m_strDataType;
    std::int32_t m_nArraySize = 1;
    QLineEdit* m_editCacheName;
    QLineEdit* m_editInstance;
    QLineEdit* m_editColumnName;
    QComboBox* m_cmbType;
    QLineEdit* m_editArraySize;
    CListCtrl* m_lstColumns;
    QPlainTextEdit* m_editStructure;
};

} // namespace carvelot
