// WaitCursor.h - the wait cursor for as long as an object lives.
#pragma once

#include <QApplication>

namespace carvelot {

class CWaitCursor {
public:
    CWaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~CWaitCursor() { QApplication::restoreOverrideCursor(); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
};

} // namespace carvelot
