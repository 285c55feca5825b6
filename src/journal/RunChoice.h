#pragma once
#include <QString>

#include <functional>

// What to do with a run that did not end: asked at start for a run without its closing
// record, and when a run stops part-way.
enum class RunChoice { UndoDone, Finish, Leave };

// A modal question with the three buttons, "Undo what was done" the default; Escape leaves it.
RunChoice askRunChoice(const QString& text, const QString& informative);

// Tests answer in place of a person; an empty answer restores the dialog.
using RunChoiceAnswer = std::function<RunChoice(const QString& text, const QString& informative)>;
void setRunChoiceAnswer(RunChoiceAnswer answer);
