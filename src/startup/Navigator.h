#pragma once

/// The program's windows by kind, and by the half that comes to the front.
enum class Form {
    SelPrjType,      ///< launcher
    SelPrjTypetoAdd, ///< new project wizard
    ContinueProject, ///< continue/delete dialog, its continue half in front
    DeleteProject,   ///< the same window with its delete half in front
    MergeProjects,
    RankBookSet,
    MainUI,
    Build,
    IBLReport,
    SplashScreen,
};

/// How windows open each other without knowing each other's classes. Each kind has at most one
/// window, made on the first touch.
class Navigator
{
public:
    virtual ~Navigator() = default;
    /// Makes the window when needed, loads it when it is not loaded, and shows it (not modal).
    virtual void show(Form form) = 0;
    /// Loads the launcher when needed, then runs its `loadform`: how Back comes home.
    virtual void loadform() = 0;
    /// Closes the window when it is there, as its close box would. False when it refused.
    virtual bool unload(Form form) = 0;
    /// Goes on with another project: closes the main window, which may refuse, and opens it anew.
    /// Raises 5, with nothing closed, when the project is no longer among those to continue; where
    /// it cannot be read, the launcher is shown and the error raised.
    virtual void openProject(const QString &name) = 0;
};
