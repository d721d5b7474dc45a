#pragma once

#include <QString>

/// The program-wide values, held for the whole run.
struct Session
{
    QString serverPath;      ///< installation folder that holds Docs\, ends in a backslash
    QString clientBinPath;   ///< client folder + "Bin\"
    QString projectName;     ///< folder name below Docs: the typed name, or "<language>_<name>"
    QString projectLanguage; ///< ENU, CHS, CHT, DEU, JPN or KOR
    QString projectId;       ///< QV_Acro of the catalogue

    bool gbBackToLauncher = false;   ///< a Back button returned; keeps the splash away
    bool gbFromMainWindow = false;   ///< Select Project returned; keeps the splash away
    bool closeWithoutAsking = false; ///< only ever cleared

    bool quickNavChanged = false; ///< changes that no build has taken in yet
    bool booksChanged = false;
    bool globalsChanged = false;

    QString errorText; ///< the last error of a shared procedure, "<number>: <description>"

    [[nodiscard]] bool hasUnbuiltChanges() const
    {
        return quickNavChanged || booksChanged || globalsChanged;
    }
};
