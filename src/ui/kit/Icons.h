// Icons.h - all pictures of the program. They are drawn, not stored, so that they are sharp at every scale.
#pragma once

#include <QIcon>
#include <QList>
#include <QSize>

namespace carvelot {

// The size of the images of the trees.
inline constexpr QSize kStripImageSize{16, 15};

// Loads a strip by its name: "TreeImages" (23 images, both session trees) or "cacheicons" (11 images, the
// Cache Details pane). False for any other name.
bool LoadImageStrip(const char* pszName, QList<QIcon>& listImages);

// The icon of a command; null for one that has none.
QIcon CommandIcon(int nId);

// The program, a session window, a cache browser window.
QIcon ApplicationIcon();
QIcon SessionIcon();
QIcon CacheIcon();

} // namespace carvelot
