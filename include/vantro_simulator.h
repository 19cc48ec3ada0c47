/*
 * The simulated Mac, through C: a deterministic Mac with a virtual clock on
 * which vantro.h's functions run off Apple systems, so that a host's
 * permission flow can be tested anywhere. Plain C99. Not part of
 * Vantro.framework.
 *
 * The thread that creates a simulated Mac is its main thread: call every
 * function of vantro.h and of this header there. While a simulated Mac
 * exists, vantro.h runs on it; one made while another exists runs until it
 * is destroyed, and then the earlier one is current again.
 */
#ifndef VANTRO_SIMULATOR_H
#define VANTRO_SIMULATOR_H

#include "vantro.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct vantro_simulated_mac vantro_simulated_mac;

/* Makes a simulated Mac running `release` ("10.15", "13", "15"; NULL for
   10.15) whose user prefers `language` ("fr", "ja-JP"; NULL for English),
   and makes it current. `resources` is the folder of the framework's
   resources (NULL: the one the library was built with). The caller owns the
   Mac: destroy it with vantro_sim_destroy. NULL for an unknown release, for
   a string that is not UTF-8, or when the Mac cannot be made. */
vantro_simulated_mac *vantro_sim_create(const char *release, const char *language, const char *resources);
/* Destroys the Mac and everything the framework kept for it (its watch list
   and callbacks included). NULL is ignored. */
void vantro_sim_destroy(vantro_simulated_mac *mac);

/* Lets `seconds` of virtual time pass: timers fire, the user's scripted
   answers happen. VANTRO_OK, _NULL_ARGUMENT, or _OUT_OF_RANGE for a negative
   or not finite time. */
int vantro_sim_run_for(vantro_simulated_mac *mac, double seconds);
/* The virtual time in seconds since the Mac was made; -1 for NULL. */
double vantro_sim_now(const vantro_simulated_mac *mac);

/* The user sets a category in the system's settings: VANTRO_STATUS_*
   (not determined is not available for Full Disk Access, Accessibility and
   the folders). VANTRO_OK, _NULL_ARGUMENT, _INVALID_UTF8,
   _UNKNOWN_IDENTIFIER for a category or status the settings cannot set. */
int vantro_sim_set_status(vantro_simulated_mac *mac, const char *identifier, int status);
/* The user's answer to the system's next prompt: allow when non-zero. Without
   one, the user answers "Don't Allow" after a second. VANTRO_OK or
   _NULL_ARGUMENT. */
int vantro_sim_answer_next_prompt(vantro_simulated_mac *mac, int allow);
/* The user switches to another application, leaving the host in the
   background; vantro_sim_return_to_host brings the host back. VANTRO_OK or
   _NULL_ARGUMENT. */
int vantro_sim_leave_host(vantro_simulated_mac *mac);
int vantro_sim_return_to_host(vantro_simulated_mac *mac);
/* The user drags the host's icon from the guide's overlay into the list of
   the settings window, unlocking the pane first where it has a lock, and
   switching the host on where the list has switches (System Settings, 13
   on): what grants Full Disk Access and the other categories granted by
   hand. The system may take a moment to apply it: let time pass.
   VANTRO_OK; _NULL_ARGUMENT; _OUT_OF_RANGE when no overlay shows. */
int vantro_sim_drag_icon_into_list(vantro_simulated_mac *mac);

#ifdef __cplusplus
}
#endif

#endif /* VANTRO_SIMULATOR_H */
