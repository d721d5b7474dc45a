#pragma once

struct Components;
struct Session;
class Clock;
class CurrentProject;
class DesktopWindows;
class FileDialogs;
class FileSystem;
class Messages;
class Navigator;
class Processes;
class ProgramEnd;
class Registry;
class SystemLocale;

/// The world as the windows see it: made once in main and once per test, handed in by the door.
struct Program
{
    Session &session;
    FileSystem &files;
    Registry &registry;
    Processes &processes;
    DesktopWindows &windows;
    Clock &clock;
    Messages &messages;
    FileDialogs &fileDialogs;
    SystemLocale &locale;
    ProgramEnd &ending;
    Navigator &navigator;
    CurrentProject &currentProject;
    Components &components;
};
