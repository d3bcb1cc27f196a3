// What screen readers are told of labels, lists and plots. Qt tells them of the other controls.
#pragma once

#include <QAbstractScrollArea>
#include <QLabel>

namespace halmek {

// Registers with Qt how labels and plots are told. More than once is as good as once.
void InstallAccessibility();

// Says what a label shows: it is read as "MEANING: TEXT", without a text as "MEANING: none", and told anew
// whenever its text changes.
void SetMeaning(QLabel* label, const QString& meaning);

// Names a field, which may be a label that shows a value, by the label that stands before it.
void SetCaption(QLabel* caption, QWidget* field);

// Names a list or a text, and its scroll bars.
void NameArea(QAbstractScrollArea* area, const QString& name);

}  // namespace halmek
