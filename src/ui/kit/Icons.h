// Icons.h - all pictures of the program. Each is a drawing in resources/icons, rendered by the build at the
// sizes that screens ask for.
#pragma once

#include <QIcon>
#include <QList>
#include <QSize>

namespace carvelot {

// The size of the images of the trees.
inline constexpr QSize kStripImageSize{16, 15};

// Loads a strip by its name: "TreeImages" (23 images, both session trees) or "cacheicons" (11 images, the
// Cache Details pane). False for any other name.
bool LoadImageStrip(const char* name, QList<QIcon>& images);

// The icon of a command; null for one that has none.
QIcon CommandIcon(int id);

// The program, a session window, a cache browser window.
QIcon ApplicationIcon();
QIcon SessionIcon();
QIcon CacheIcon();

} // namespace carvelot
