// AccessibleMenus.h - pop-up menus for those who do not see them.
#pragma once

namespace carvelot {

// From now on a menu that pops up by itself, at the pointer or at a button, stands among the program's
// windows in the accessibility tree as long as it is shown, with the focus on its first entry; the toolkit
// lists only the menus of menu bars. To be called before the program's first event.
void ShowMenusToScreenReaders();

} // namespace carvelot
