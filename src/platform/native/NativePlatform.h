#pragma once

// The adapters of the system that the program is built for, under names that do not say which.

#include "platform/native/NativeFiles.h"
#include "platform/shared/DrivesFolder.h"
#include "platform/shared/IniRegistry.h"
#include "platform/shared/PortableLocale.h"
#include "platform/shared/ProgramEndNow.h"
#include "platform/shared/SystemClock.h"

using NativeLocale = PortableLocale;

#ifdef Q_OS_WIN
#include "platform/windows/FoundWindows.h"
#include "platform/windows/SingleInstance.h"
#include "platform/windows/StopSignals.h"
#include "platform/windows/WindowAnnouncer.h"
#include "platform/windows/WindowsProcesses.h"
#include "platform/windows/WindowsRegistry.h"
using NativeProcesses = WindowsProcesses;
using NativeRegistry = WindowsRegistry;
using NativeWindows = FoundWindows;
#else
#include "platform/portable/PortableProcesses.h"
#include "platform/portable/SingleInstance.h"
#include "platform/portable/SocketWindows.h"
#include "platform/portable/StopSignals.h"
#include "platform/portable/WindowAnnouncer.h"
using NativeProcesses = PortableProcesses;
using NativeRegistry = IniRegistry;
using NativeWindows = SocketWindows;
#endif
