#pragma once

#include <QtGlobal>

#ifdef Q_OS_WIN
#include "platform/windows/WindowsFiles.h"
using NativeFiles = WindowsFiles;
#else
#include "platform/portable/PortableFiles.h"
using NativeFiles = PortableFiles;
#endif
