// ToolBarImages.h - images that a user laid beside the program for buttons of their own, 16 by 16 pixels
// each.
#pragma once

#include <QIcon>
#include <QList>

namespace carvelot {

class CToolBarImages {
public:
    // Loads a strip of at most 819200 bytes; false when there is none or it is no picture.
    bool Load(const QString& path);
    int Count() const { return static_cast<int>(m_listImages.size()); }
    QIcon Icon(int index) const { return m_listImages.value(index); }

private:
    QList<QIcon> m_listImages;
};

} // namespace carvelot
