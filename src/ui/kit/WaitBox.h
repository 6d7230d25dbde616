// WaitBox.h - how far a long wait has come, and a way to end it.
#pragma once

#include <QElapsedTimer>
#include <QString>

#include <cstdint>
#include <memory>

class QProgressDialog;

namespace carvelot {

// A box with a bar and Cancel that comes up once a wait has taken longer than a moment. While it is up
// nothing else in the program can be clicked or typed at.
class CWaitBox {
public:
    explicit CWaitBox(const QString& text);
    ~CWaitBox();
    CWaitBox(const CWaitBox&) = delete;
    CWaitBox& operator=(const CWaitBox&) = delete;

    // To be called now and then: false once the user has cancelled, also with Esc. A total of 0 is one that
    // nobody knows.
    bool GoOn(std::uint64_t done, std::uint64_t total);

    // How long a wait takes without the box; for tests too.
    static inline std::int64_t s_nPatience = 1000; // milliseconds

private:
    void ComeUp();

    const QString m_strText;
    QElapsedTimer m_since;
    std::unique_ptr<QProgressDialog> m_pBox;
    std::int64_t m_nShown = 0; // when the bar was moved last, of m_since
};

} // namespace carvelot
