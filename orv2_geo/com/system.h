// system.h: what the system tells of components.
#pragma once

#include <windows.h>
// The others take its names for granted.
#include <dispex.h>
#include <oaidl.h>
#include <ocidl.h>
#include <oleauto.h>
