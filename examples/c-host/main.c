/* A small C host of Vantro on the simulated Mac: it lists the categories in
   the user's language, watches Full Disk Access, asks for it, and plays the
   user who drags the host's icon into the settings' list and comes back.
   It ends with status 0 when the host heard exactly one change, 1->2.

   Build: cc -std=c99 main.c -Iinclude -Lbuild/ci -lvantro
   Run:   VANTRO_RESOURCES=Resources ./a.out */
#include <stdio.h>
#include <stdlib.h>

#include "vantro.h"
#include "vantro_simulator.h"

struct heard {
    int count;
    int old_status;
    int new_status;
};

static void status_changed(const char *identifier, int old_status, int new_status, void *user_data) {
    struct heard *heard = (struct heard *)user_data;
    printf("changed: %s %d -> %d\n", identifier, old_status, new_status);
    heard->count++;
    heard->old_status = old_status;
    heard->new_status = new_status;
}

static int failures = 0;

static void expect(int condition, const char *what) {
    if (!condition) {
        fprintf(stderr, "FAILED: %s\n", what);
        failures++;
    }
}

int main(void) {
    const char *watched[] = {"Privacy_AllFiles"};
    struct heard heard = {0, 0, 0};
    vantro_simulated_mac *mac;
    int i, count;

    printf("Vantro %s (%d)\n", vantro_version_string(), vantro_version());
    expect(vantro_status("Privacy_AllFiles") == VANTRO_ERROR_NOT_SET_UP, "a call before set-up is refused");

    mac = vantro_sim_create("15", "fr", getenv("VANTRO_RESOURCES"));
    if (!mac) {
        fprintf(stderr, "no simulated Mac\n");
        return 1;
    }
    count = vantro_category_count();
    for (i = 0; i < count; i++) {
        const char *identifier = vantro_category_identifier(i);
        char *label = vantro_copy_label(identifier);
        printf("%-26s %-40s status %d, type %d\n", identifier, label ? label : "?", vantro_status(identifier),
               vantro_request_type(identifier));
        vantro_free_string(label);
    }
    expect(vantro_status(NULL) == VANTRO_ERROR_NULL_ARGUMENT, "NULL is refused");
    expect(vantro_status("Privacy_\xff") == VANTRO_ERROR_INVALID_UTF8, "invalid UTF-8 is refused");
    expect(vantro_status("Privacy_Bogus") == VANTRO_ERROR_UNKNOWN_IDENTIFIER, "an unknown identifier is refused");

    expect(vantro_add_status_callback(status_changed, &heard) > 0, "the callback is added");
    expect(vantro_watch(watched, 1) == VANTRO_OK, "Full Disk Access is watched");
    expect(vantro_status("Privacy_AllFiles") == VANTRO_STATUS_DENIED, "no Full Disk Access at first");

    /* The request leads the user to the settings; the guide lays its overlay
       over them. */
    expect(vantro_request("Privacy_AllFiles", 0) == VANTRO_OK, "the request is made");
    vantro_sim_run_for(mac, 2.0);
    expect(vantro_is_overlay_shown() == 1, "the overlay shows");
    expect(vantro_sim_drag_icon_into_list(mac) == VANTRO_OK, "the user drags the icon");
    vantro_sim_run_for(mac, 2.0);
    expect(heard.count == 1, "the session's tick tells the grant at once");
    vantro_sim_return_to_host(mac);
    vantro_sim_run_for(mac, 5.0);
    expect(vantro_is_overlay_shown() == 0, "the overlay is gone");
    expect(heard.count == 1 && heard.old_status == 1 && heard.new_status == 2, "exactly one change, 1 -> 2");
    expect(vantro_status("Privacy_AllFiles") == VANTRO_STATUS_AUTHORIZED, "Full Disk Access is granted");

    vantro_sim_destroy(mac);
    expect(vantro_status("Privacy_AllFiles") == VANTRO_ERROR_NOT_SET_UP, "nothing runs once the Mac is gone");
    printf("%s\n", failures ? "FAILED" : "ok");
    return failures ? 1 : 0;
}
