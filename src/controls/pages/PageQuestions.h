#pragma once

#include "platform/Messages.h"

/// What the author is asked about the open page.
namespace PageQuestions {

enum class Leave { Save, Discard, Stay };
enum class Conflict { Reload, KeepMine, Stay };

Leave leave(Messages &messages, const QString &title);
Conflict saveOverOther(Messages &messages, const QString &shownPath);
[[nodiscard]] bool dropChanges(Messages &messages, const QString &title);
[[nodiscard]] bool unlock(Messages &messages, const QString &shownPath);
[[nodiscard]] bool replaceByKept(Messages &messages);
[[nodiscard]] bool discardKept(Messages &messages, const QString &shownPath);
[[nodiscard]] bool saveAsUtf8(Messages &messages, const QString &reason);
/// `declares`: the page names its character set.
[[nodiscard]] bool convertToUtf8(Messages &messages, const QString &encoding, bool declares);
[[nodiscard]] bool showKept(Messages &messages, int pages);

} // namespace PageQuestions
