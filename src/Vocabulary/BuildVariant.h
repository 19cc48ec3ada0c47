#pragma once

// The framework's two builds. The ordinary one may reach the system's private
// interfaces by name where the public ones fall short (the Photos privacy
// object of 10.14, the overlay window's activation hook). The App Store build,
// made with VANTRO_APP_STORE=1 for hosts in the Mac App Store, names none of
// them: its platform says so (System::usesOnlyPublicInterfaces), the core then
// never asks for them, and VANTRO_PRIVATE_NAME leaves their names out of the
// binary.
#ifndef VANTRO_APP_STORE
#define VANTRO_APP_STORE 0
#endif

#if VANTRO_APP_STORE
#define VANTRO_PRIVATE_NAME(name) ""
#else
#define VANTRO_PRIVATE_NAME(name) name
#endif
