// PlainText.h - texts from outside (a log, a file's or process's name, a definition, a library's answer) on
// the screen: never more than text, where the toolkit would look for markup, marks of keys or placeholders in
// them.
#pragma once

#include <QString>

class QLabel;

namespace carvelot {

// For menus and tabs, where a single "&" marks a key and a tab character divides: one line, as it stands.
QString PlainCaption(QString text);

// For the title of a top-level window, in which "[*]" stands for unsaved changes.
QString PlainTitle(QString text);

// A label that shows its text as it is.
QLabel* PlainLabel(const QString& text = {});

// From now on every tip of the program shows its text as it is, whoever brings it up.
void ShowTipsAsPlainText();

} // namespace carvelot
