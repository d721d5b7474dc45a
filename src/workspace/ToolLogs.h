#pragma once

struct Program;

// The logs of the current project's tools, opened in the system's text viewer. One that is not
// there is told in a message. All raise 53 when the viewer cannot be started.

void showDocToDocLog(Program &program);
/// The log inside the project folder, or an older one beside it.
void showQaLog(Program &program);
void showQuickNavLog(Program &program);
/// The first of two places that has one; an empty file there counts as no log.
void showSearchWordsLog(Program &program);
