/*
 * Vantro's C interface: the privacy permissions of a Mac application, for
 * hosts written in C, Rust, Go, Python, Swift, C++ or any language that can
 * call C. Plain C99; the same functions run over the real Mac in
 * Vantro.framework and over the simulated Mac on other systems (see
 * vantro_simulator.h).
 *
 * Strings go in and come out as NUL-terminated UTF-8. Whoever owns a
 * returned string is written beside its function. No function raises or
 * aborts: a wrong argument is answered by one of the negative vantro_error
 * values below, documented for each function.
 *
 * Threads: unless a function says otherwise, call it on the main thread (the
 * thread that runs the application's run loop; off a Mac, the thread that
 * created the simulated Mac); elsewhere it answers VANTRO_ERROR_WRONG_THREAD
 * and does nothing. Callbacks arrive on the main thread.
 *
 * Identifiers are the privacy categories' anchors: "Privacy_AllFiles",
 * "Privacy_Calendars", "Privacy_Camera", ... (vantro_category_identifier
 * lists those of the running system).
 */
#ifndef VANTRO_H
#define VANTRO_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The release this header belongs to; vantro_version() answers the
   library's own, VANTRO_VERSION_NUMBER's form. */
#define VANTRO_VERSION_MAJOR 1
#define VANTRO_VERSION_MINOR 0
#define VANTRO_VERSION_PATCH 0
#define VANTRO_VERSION_STRING "1.0.0"
#define VANTRO_VERSION_NUMBER (VANTRO_VERSION_MAJOR * 10000 + VANTRO_VERSION_MINOR * 100 + VANTRO_VERSION_PATCH)

/* A category's status. Anything but VANTRO_STATUS_AUTHORIZED is not granted. */
#define VANTRO_STATUS_NOT_DETERMINED 0
#define VANTRO_STATUS_DENIED 1
#define VANTRO_STATUS_AUTHORIZED 2

/* How a category is obtained: the system asks the user (request), the user
   grants it in the settings (grant), or the framework can only look (check). */
#define VANTRO_REQUEST_TYPE_REQUEST 0
#define VANTRO_REQUEST_TYPE_GRANT 1
#define VANTRO_REQUEST_TYPE_CHECK 2

/* What a call answers when it could not do what was asked. */
typedef enum vantro_error {
    VANTRO_OK = 0,
    /* A pointer that must not be NULL was NULL. */
    VANTRO_ERROR_NULL_ARGUMENT = -1,
    /* A string is not valid UTF-8. */
    VANTRO_ERROR_INVALID_UTF8 = -2,
    /* The identifier names no category this call serves on the running
       system (a newer category while they are off included). */
    VANTRO_ERROR_UNKNOWN_IDENTIFIER = -3,
    /* Nothing to run on: off a Mac, no simulated Mac exists. */
    VANTRO_ERROR_NOT_SET_UP = -4,
    /* Called off the main thread. */
    VANTRO_ERROR_WRONG_THREAD = -5,
    /* An index or count out of range. */
    VANTRO_ERROR_OUT_OF_RANGE = -6,
    /* Something failed inside the framework; nothing was changed. */
    VANTRO_ERROR_INTERNAL = -7
} vantro_error;

/* The library's release as VANTRO_VERSION_NUMBER computes it (10000 for
   1.0.0). Any thread, any time. */
int vantro_version(void);
/* The library's release as text ("1.0.0"). Any thread, any time. The string
   is the library's, static: never free it. */
const char *vantro_version_string(void);

/* A category's status: VANTRO_STATUS_*. Never asks the user anything.
   Answers VANTRO_ERROR_NULL_ARGUMENT, _INVALID_UTF8, _UNKNOWN_IDENTIFIER
   (also for a category without a status of its own, "Privacy_Automation"),
   _NOT_SET_UP or _WRONG_THREAD. */
int vantro_status(const char *identifier);

/* How a category is obtained: VANTRO_REQUEST_TYPE_*. Same errors as
   vantro_status, _UNKNOWN_IDENTIFIER for anything that is not a category. */
int vantro_request_type(const char *identifier);

/* Asks for a category: the system's prompt, or the guide to the settings.
   With `silent` non-zero nothing of the framework's own is shown (no refusal
   alert, no guide). There is no completion: watch the status (below) or ask
   it again. VANTRO_OK, or the errors of vantro_status. */
int vantro_request(const char *identifier, int silent);

/* The categories the running system has and the framework serves, in the
   framework's order, the newer ones last while they are on. The count, or
   _NOT_SET_UP / _WRONG_THREAD. */
int vantro_category_count(void);
/* The identifier at `index` (from 0) of that list, or NULL when `index` is
   out of range or the call is not allowed. The string is the library's,
   static: never free it. */
const char *vantro_category_identifier(int index);

/* A category's label in the user's language ("Full Disk Access",
   "Accès complet au disque"). A new string the caller owns: release it with
   vantro_free_string. NULL for a NULL, invalid or unknown identifier, before
   set-up and off the main thread. */
char *vantro_copy_label(const char *identifier);
/* Releases a string a vantro_copy_* function returned. NULL is ignored. Any
   thread. */
void vantro_free_string(char *string);

/* Starts a guide session: the settings open at the category and an overlay
   shows the user what to do. `identifier` NULL opens the privacy settings
   themselves; `message` NULL shows the category's own prompt, else the
   message (copied). Needs the application's run loop running (a Cocoa
   application; Electron's main process). VANTRO_OK or the errors of
   vantro_status (_UNKNOWN_IDENTIFIER for a non-category). */
int vantro_guide(const char *identifier, const char *message);
/* Ends the guide session, if one runs. VANTRO_OK, _NOT_SET_UP or
   _WRONG_THREAD. */
int vantro_stop_guide(void);
/* 1 while the guide's overlay shows, 0 otherwise; _NOT_SET_UP or
   _WRONG_THREAD. */
int vantro_is_overlay_shown(void);

/* The newer categories (Screen Recording, Input Monitoring, Camera,
   Microphone, Bluetooth): off until the host turns them on; while off their
   identifiers are unknown. vantro_set_newer_categories answers VANTRO_OK;
   vantro_newer_categories 1 or 0; both _NOT_SET_UP or _WRONG_THREAD. */
int vantro_set_newer_categories(int on);
int vantro_newer_categories(void);

/* Told of one status change of a watched category: its identifier (valid
   during the call only: copy it to keep it), the status before and now. */
typedef void (*vantro_status_callback)(const char *identifier, int old_status, int new_status, void *user_data);

/* Watches these categories from now on, replacing the list: their statuses
   are read again when the application becomes active, when a guide session
   ends and each second while one runs, and every change is told to every
   callback. `count` 0 (identifiers may then be NULL) watches nothing, and
   nothing is read at all. The strings are copied. On any bad entry nothing
   changes and the entry's error is answered (_NULL_ARGUMENT, _INVALID_UTF8,
   _UNKNOWN_IDENTIFIER), or _OUT_OF_RANGE for a negative count. */
int vantro_watch(const char *const *identifiers, int count);
/* Adds a callback, told with `user_data` on the main thread. Answers its
   token (greater than 0), or _NULL_ARGUMENT, _NOT_SET_UP, _WRONG_THREAD.
   Callbacks and the watch list last as long as the process (off a Mac: as
   long as the simulated Mac). */
int vantro_add_status_callback(vantro_status_callback callback, void *user_data);
/* Removes a callback by its token; a token not in use is ignored. A callback
   may remove itself. VANTRO_OK, _NOT_SET_UP or _WRONG_THREAD. */
int vantro_remove_status_callback(int token);

#ifdef __cplusplus
}
#endif

#endif /* VANTRO_H */
