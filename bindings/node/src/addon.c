/* The Node-API add-on: vantro.h's functions as JavaScript functions, nothing
   more. Every call comes from JavaScript's main thread, which is the
   application's main thread (Electron's main process) or the thread that made
   the simulated Mac. A negative answer of vantro.h becomes an exception whose
   `code` names it; index.js shapes the API. */
#include <stdlib.h>
#include <string.h>

#include <node_api.h>

#include "vantro.h"
#ifdef VANTRO_NODE_SIMULATED
#include "vantro_simulator.h"
#endif

#define CHECK(call)                                                                                                    \
    do {                                                                                                               \
        if ((call) != napi_ok) return NULL;                                                                            \
    } while (0)

static const char *error_code(int error) {
    switch (error) {
    case VANTRO_ERROR_NULL_ARGUMENT: return "VANTRO_ERROR_NULL_ARGUMENT";
    case VANTRO_ERROR_INVALID_UTF8: return "VANTRO_ERROR_INVALID_UTF8";
    case VANTRO_ERROR_UNKNOWN_IDENTIFIER: return "VANTRO_ERROR_UNKNOWN_IDENTIFIER";
    case VANTRO_ERROR_NOT_SET_UP: return "VANTRO_ERROR_NOT_SET_UP";
    case VANTRO_ERROR_WRONG_THREAD: return "VANTRO_ERROR_WRONG_THREAD";
    case VANTRO_ERROR_OUT_OF_RANGE: return "VANTRO_ERROR_OUT_OF_RANGE";
    default: return "VANTRO_ERROR_INTERNAL";
    }
}

static const char *error_message(int error) {
    switch (error) {
    case VANTRO_ERROR_NULL_ARGUMENT: return "a required argument is missing";
    case VANTRO_ERROR_INVALID_UTF8: return "a string is not valid UTF-8";
    case VANTRO_ERROR_UNKNOWN_IDENTIFIER: return "not a privacy category Vantro serves here";
    case VANTRO_ERROR_NOT_SET_UP: return "no Mac to run on: off macOS, call vantro.simulate() first";
    case VANTRO_ERROR_WRONG_THREAD: return "called off the main thread";
    case VANTRO_ERROR_OUT_OF_RANGE: return "out of range";
    default: return "Vantro failed inside";
    }
}

/* Throws for a negative answer; answers the value (or NULL after throwing). */
static napi_value answer(napi_env env, int value) {
    napi_value result;
    if (value < 0) {
        napi_throw_error(env, error_code(value), error_message(value));
        return NULL;
    }
    CHECK(napi_create_int32(env, value, &result));
    return result;
}

/* Reads argument `index` as a string into a new buffer the caller frees;
   NULL for undefined and null. Sets *ok to 0 (after throwing) when the
   argument is neither a string nor missing. */
static char *string_argument(napi_env env, napi_value *argv, size_t argc, size_t index, int *ok) {
    napi_valuetype type = napi_undefined;
    size_t length = 0;
    char *text;
    *ok = 1;
    if (index < argc && napi_typeof(env, argv[index], &type) != napi_ok) type = napi_undefined;
    if (type == napi_undefined || type == napi_null) return NULL;
    if (type != napi_string) {
        napi_throw_type_error(env, "VANTRO_ERROR_NULL_ARGUMENT", "expected a string");
        *ok = 0;
        return NULL;
    }
    napi_get_value_string_utf8(env, argv[index], NULL, 0, &length);
    text = malloc(length + 1);
    if (!text || napi_get_value_string_utf8(env, argv[index], text, length + 1, &length) != napi_ok) {
        free(text);
        napi_throw_error(env, "VANTRO_ERROR_INTERNAL", "out of memory");
        *ok = 0;
        return NULL;
    }
    return text;
}

static int bool_argument(napi_env env, napi_value *argv, size_t argc, size_t index) {
    bool value = false;
    napi_value coerced;
    if (index >= argc || napi_coerce_to_bool(env, argv[index], &coerced) != napi_ok) return 0;
    napi_get_value_bool(env, coerced, &value);
    return value ? 1 : 0;
}

#define ARGUMENTS(n)                                                                                                   \
    size_t argc = n;                                                                                                   \
    napi_value argv[n];                                                                                                \
    CHECK(napi_get_cb_info(env, info, &argc, argv, NULL, NULL))

/* A function of one identifier answering an int. */
static napi_value call_with_identifier(napi_env env, napi_callback_info info, int (*function)(const char *)) {
    int ok, result;
    char *identifier;
    ARGUMENTS(1);
    identifier = string_argument(env, argv, argc, 0, &ok);
    if (!ok) return NULL;
    result = function(identifier);
    free(identifier);
    return answer(env, result);
}

static napi_value status(napi_env env, napi_callback_info info) { return call_with_identifier(env, info, vantro_status); }

static napi_value request_type(napi_env env, napi_callback_info info) {
    return call_with_identifier(env, info, vantro_request_type);
}

static napi_value request(napi_env env, napi_callback_info info) {
    int ok, result;
    char *identifier;
    ARGUMENTS(2);
    identifier = string_argument(env, argv, argc, 0, &ok);
    if (!ok) return NULL;
    result = vantro_request(identifier, bool_argument(env, argv, argc, 1));
    free(identifier);
    if (result < 0) return answer(env, result);
    return NULL;
}

static napi_value categories(napi_env env, napi_callback_info info) {
    napi_value list, item;
    int count = vantro_category_count(), i;
    (void)info;
    if (count < 0) return answer(env, count);
    CHECK(napi_create_array_with_length(env, (size_t)count, &list));
    for (i = 0; i < count; i++) {
        const char *identifier = vantro_category_identifier(i);
        if (!identifier) continue;
        CHECK(napi_create_string_utf8(env, identifier, NAPI_AUTO_LENGTH, &item));
        CHECK(napi_set_element(env, list, (uint32_t)i, item));
    }
    return list;
}

static napi_value label(napi_env env, napi_callback_info info) {
    int ok, check;
    char *identifier, *text;
    napi_value result;
    ARGUMENTS(1);
    identifier = string_argument(env, argv, argc, 0, &ok);
    if (!ok) return NULL;
    /* The label's own answer is NULL for every refusal; the request type
       tells which one it was. */
    check = vantro_request_type(identifier);
    text = check < 0 ? NULL : vantro_copy_label(identifier);
    free(identifier);
    if (!text) return answer(env, check < 0 ? check : VANTRO_ERROR_INTERNAL);
    napi_create_string_utf8(env, text, NAPI_AUTO_LENGTH, &result);
    vantro_free_string(text);
    return result;
}

static napi_value guide(napi_env env, napi_callback_info info) {
    int ok, result;
    char *identifier, *message;
    ARGUMENTS(2);
    identifier = string_argument(env, argv, argc, 0, &ok);
    if (!ok) return NULL;
    message = string_argument(env, argv, argc, 1, &ok);
    if (!ok) {
        free(identifier);
        return NULL;
    }
    result = vantro_guide(identifier, message);
    free(identifier);
    free(message);
    if (result < 0) return answer(env, result);
    return NULL;
}

static napi_value stop_guide(napi_env env, napi_callback_info info) {
    int result = vantro_stop_guide();
    (void)info;
    if (result < 0) return answer(env, result);
    return NULL;
}

/* An answer of 1 or 0 as true or false. */
static napi_value boolean_answer(napi_env env, int value) {
    napi_value result;
    if (value < 0) return answer(env, value);
    CHECK(napi_get_boolean(env, value == 1, &result));
    return result;
}

static napi_value overlay_shown(napi_env env, napi_callback_info info) {
    (void)info;
    return boolean_answer(env, vantro_is_overlay_shown());
}

static napi_value set_newer_categories(napi_env env, napi_callback_info info) {
    int result;
    ARGUMENTS(1);
    result = vantro_set_newer_categories(bool_argument(env, argv, argc, 0));
    if (result < 0) return answer(env, result);
    return NULL;
}

static napi_value newer_categories(napi_env env, napi_callback_info info) {
    (void)info;
    return boolean_answer(env, vantro_newer_categories());
}

/* watch(identifiers): the whole list at once. */
static napi_value watch(napi_env env, napi_callback_info info) {
    uint32_t count = 0, i;
    bool is_array = false;
    char **identifiers;
    int result = VANTRO_OK, ok = 1;
    ARGUMENTS(1);
    if (argc < 1 || napi_is_array(env, argv[0], &is_array) != napi_ok || !is_array) {
        napi_throw_type_error(env, "VANTRO_ERROR_NULL_ARGUMENT", "expected an array of identifiers");
        return NULL;
    }
    CHECK(napi_get_array_length(env, argv[0], &count));
    identifiers = calloc(count ? count : 1, sizeof *identifiers);
    if (!identifiers) return answer(env, VANTRO_ERROR_INTERNAL);
    for (i = 0; i < count && ok; i++) {
        napi_value item;
        if (napi_get_element(env, argv[0], i, &item) != napi_ok) {
            ok = 0;
            break;
        }
        identifiers[i] = string_argument(env, &item, 1, 0, &ok);
        if (ok && !identifiers[i]) {
            napi_throw_type_error(env, "VANTRO_ERROR_NULL_ARGUMENT", "expected an array of identifiers");
            ok = 0;
        }
    }
    if (ok) result = vantro_watch((const char *const *)identifiers, (int)count);
    for (i = 0; i < count; i++) free(identifiers[i]);
    free(identifiers);
    if (!ok) return NULL;
    if (result < 0) return answer(env, result);
    return NULL;
}

/* Status changes reach JavaScript through a thread-safe function, so that
   they arrive the same way whether the Mac's run loop (Electron) or a
   simulated Mac's virtual time produced them: on the JavaScript thread, as
   soon as it is free. */
struct change {
    char *identifier;
    int old_status;
    int new_status;
};

static napi_threadsafe_function change_function = NULL;
static int change_token = 0;

static void deliver_change(napi_env env, napi_value js_callback, void *context, void *data) {
    struct change *change = data;
    napi_value arguments[3], undefined;
    (void)context;
    if (env && js_callback && change && change->identifier &&
        napi_create_string_utf8(env, change->identifier, NAPI_AUTO_LENGTH, &arguments[0]) == napi_ok &&
        napi_create_int32(env, change->old_status, &arguments[1]) == napi_ok &&
        napi_create_int32(env, change->new_status, &arguments[2]) == napi_ok && napi_get_undefined(env, &undefined) == napi_ok)
        napi_call_function(env, undefined, js_callback, 3, arguments, NULL);
    if (change) free(change->identifier);
    free(change);
}

static void status_changed(const char *identifier, int old_status, int new_status, void *user_data) {
    struct change *change = malloc(sizeof *change);
    (void)user_data;
    if (!change) return;
    change->identifier = malloc(strlen(identifier) + 1);
    if (!change->identifier) {
        free(change);
        return;
    }
    strcpy(change->identifier, identifier);
    change->old_status = old_status;
    change->new_status = new_status;
    if (!change_function || napi_call_threadsafe_function(change_function, change, napi_tsfn_nonblocking) != napi_ok) {
        free(change->identifier);
        free(change);
    }
}

/* onChange(callback): the one JavaScript function every change goes to,
   registered with the current Mac (again after each new simulated Mac). */
static napi_value on_change(napi_env env, napi_callback_info info) {
    napi_value name;
    ARGUMENTS(1);
    if (!change_function) {
        CHECK(napi_create_string_utf8(env, "vantro status change", NAPI_AUTO_LENGTH, &name));
        CHECK(napi_create_threadsafe_function(env, argv[0], NULL, name, 0, 1, NULL, NULL, NULL, deliver_change,
                                              &change_function));
        /* Changes never keep the process alive by themselves. */
        napi_unref_threadsafe_function(env, change_function);
    }
    if (change_token > 0) vantro_remove_status_callback(change_token);
    change_token = vantro_add_status_callback(status_changed, NULL);
    if (change_token < 0) {
        int error = change_token;
        change_token = 0;
        return answer(env, error);
    }
    return NULL;
}

static napi_value version(napi_env env, napi_callback_info info) {
    napi_value result;
    (void)info;
    CHECK(napi_create_string_utf8(env, vantro_version_string(), NAPI_AUTO_LENGTH, &result));
    return result;
}

#ifdef VANTRO_NODE_SIMULATED
/* A simulated Mac is an external value owning its vantro_simulated_mac until
   destroyed by hand or collected. */
struct simulated {
    vantro_simulated_mac *mac;
};

static void finalize_simulated(napi_env env, void *data, void *hint) {
    struct simulated *simulated = data;
    (void)env;
    (void)hint;
    if (simulated->mac) vantro_sim_destroy(simulated->mac);
    free(simulated);
}

static struct simulated *simulated_argument(napi_env env, napi_value *argv, size_t argc) {
    void *data = NULL;
    if (argc < 1 || napi_get_value_external(env, argv[0], &data) != napi_ok || !data ||
        !((struct simulated *)data)->mac) {
        napi_throw_error(env, "VANTRO_ERROR_NOT_SET_UP", "this simulated Mac is gone");
        return NULL;
    }
    return data;
}

static napi_value simulate(napi_env env, napi_callback_info info) {
    int ok;
    char *release, *language, *resources;
    struct simulated *simulated;
    napi_value result;
    ARGUMENTS(3);
    release = string_argument(env, argv, argc, 0, &ok);
    if (!ok) return NULL;
    language = string_argument(env, argv, argc, 1, &ok);
    resources = ok ? string_argument(env, argv, argc, 2, &ok) : NULL;
    simulated = ok ? malloc(sizeof *simulated) : NULL;
    if (simulated) simulated->mac = vantro_sim_create(release, language, resources);
    free(release);
    free(language);
    free(resources);
    if (!ok) {
        free(simulated);
        return NULL;
    }
    if (!simulated || !simulated->mac) {
        free(simulated);
        napi_throw_error(env, "VANTRO_ERROR_OUT_OF_RANGE", "no simulated Mac of that release");
        return NULL;
    }
    if (napi_create_external(env, simulated, finalize_simulated, NULL, &result) != napi_ok) {
        finalize_simulated(env, simulated, NULL);
        return NULL;
    }
    return result;
}

static napi_value sim_destroy(napi_env env, napi_callback_info info) {
    struct simulated *simulated;
    ARGUMENTS(1);
    simulated = simulated_argument(env, argv, argc);
    if (!simulated) return NULL;
    vantro_sim_destroy(simulated->mac);
    simulated->mac = NULL;
    change_token = 0;
    return NULL;
}

static napi_value sim_now(napi_env env, napi_callback_info info) {
    struct simulated *simulated;
    napi_value result;
    ARGUMENTS(1);
    simulated = simulated_argument(env, argv, argc);
    if (!simulated) return NULL;
    CHECK(napi_create_double(env, vantro_sim_now(simulated->mac), &result));
    return result;
}

static napi_value sim_set_status(napi_env env, napi_callback_info info) {
    struct simulated *simulated;
    int ok, status = -1, result;
    char *identifier;
    ARGUMENTS(3);
    simulated = simulated_argument(env, argv, argc);
    if (!simulated) return NULL;
    identifier = string_argument(env, argv, argc, 1, &ok);
    if (!ok) return NULL;
    if (argc < 3 || napi_get_value_int32(env, argv[2], &status) != napi_ok) status = -1;
    result = vantro_sim_set_status(simulated->mac, identifier, status);
    free(identifier);
    if (result < 0) return answer(env, result);
    return NULL;
}

/* What happens on the Mac: the user's actions, which take one flag, and
   time passing (action 4), which takes the seconds. */
static napi_value sim_act(napi_env env, napi_callback_info info) {
    struct simulated *simulated;
    int32_t action = 0;
    double seconds = -1;
    int result;
    ARGUMENTS(3);
    simulated = simulated_argument(env, argv, argc);
    if (!simulated) return NULL;
    if (argc < 2 || napi_get_value_int32(env, argv[1], &action) != napi_ok) action = -1;
    switch (action) {
    case 0: result = vantro_sim_answer_next_prompt(simulated->mac, bool_argument(env, argv, argc, 2)); break;
    case 1: result = vantro_sim_leave_host(simulated->mac); break;
    case 2: result = vantro_sim_return_to_host(simulated->mac); break;
    case 3: result = vantro_sim_drag_icon_into_list(simulated->mac); break;
    case 4:
        if (argc < 3 || napi_get_value_double(env, argv[2], &seconds) != napi_ok) seconds = -1;
        result = vantro_sim_run_for(simulated->mac, seconds);
        break;
    default: result = VANTRO_ERROR_OUT_OF_RANGE; break;
    }
    if (result < 0) return answer(env, result);
    return NULL;
}
#endif

static napi_value init(napi_env env, napi_value exports) {
    static const struct {
        const char *name;
        napi_callback function;
    } functions[] = {
        {"status", status},
        {"requestType", request_type},
        {"request", request},
        {"categories", categories},
        {"label", label},
        {"guide", guide},
        {"stopGuide", stop_guide},
        {"isOverlayShown", overlay_shown},
        {"setNewerCategories", set_newer_categories},
        {"newerCategories", newer_categories},
        {"watch", watch},
        {"onChange", on_change},
        {"version", version},
#ifdef VANTRO_NODE_SIMULATED
        {"simulate", simulate},
        {"simDestroy", sim_destroy},
        {"simNow", sim_now},
        {"simSetStatus", sim_set_status},
        {"simAct", sim_act},
#endif
    };
    size_t i;
    for (i = 0; i < sizeof functions / sizeof functions[0]; i++) {
        napi_value function;
        CHECK(napi_create_function(env, functions[i].name, NAPI_AUTO_LENGTH, functions[i].function, NULL, &function));
        CHECK(napi_set_named_property(env, exports, functions[i].name, function));
    }
    return exports;
}

NAPI_MODULE(NODE_GYP_MODULE_NAME, init)
