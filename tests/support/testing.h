/* testing.h: what only tests ask of the library through the C boundary: a host's
 * objects, arrays and texts worked on as a member would, a sample form, boxes.
 *
 * Status and failures as in orv2_geo.h.
 */
#ifndef ORV2_GEO_TESTS_SUPPORT_TESTING_H
#define ORV2_GEO_TESTS_SUPPORT_TESTING_H

#include "orv2_geo/orv2_geo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Late-bound objects ------------------------------------------------- */

/* Sets a property of any object by name. */
ORV2_CALL int32_t orv2_testing_set_property(orv2_handle object, const char* name,
                                            const orv2_value* value);

/* Calls a member of any object by name. By-reference arguments reach it as the
 * caller's own variables. */
ORV2_CALL int32_t orv2_testing_call(orv2_handle object, const char* name,
                                    const orv2_value* arguments, size_t count, orv2_value* result);

/* The same, by name "Run", on the object that the first argument is; the other
 * arguments are passed on. */
ORV2_CALL int32_t orv2_testing_run(const orv2_value* arguments, size_t count, orv2_value* result);

/* Runs a progress indicator: Visible, Min, max, Value from 0 to `last`, hidden. */
ORV2_CALL int32_t orv2_testing_progress(orv2_handle indicator, int16_t last);

/* PSet on a drawing surface, with the point in variables of the library; what
 * they became is answered in x and y. */
ORV2_CALL int32_t orv2_testing_pset(orv2_handle surface, int16_t mode, double* x, double* y,
                                    int16_t colour);

/* ---- Variables by reference --------------------------------------------- */

/* Swaps two variables, texts or arrays of one type. Failure 13 otherwise. */
ORV2_CALL int32_t orv2_testing_swap(const orv2_value* arguments, size_t count, orv2_value* result);

/* Swaps as above and then fails with 11. */
ORV2_CALL int32_t orv2_testing_swap_and_fail(const orv2_value* arguments, size_t count,
                                             orv2_value* result);

/* Tells in the result (a bool) whether two arguments are one variable. */
ORV2_CALL int32_t orv2_testing_same(const orv2_value* arguments, size_t count, orv2_value* result);

/* The tag of the first argument as the library sees it, in the result. */
ORV2_CALL int32_t orv2_testing_tag(const orv2_value* arguments, size_t count, orv2_value* result);

/* How many 16-bit units the text in the first argument has, in the result. */
ORV2_CALL int32_t orv2_testing_text_size(const orv2_value* arguments, size_t count,
                                         orv2_value* result);

/* ---- The user interface ------------------------------------------------- */

/* Shows a small form. `events` (not null) is told the routines that ran, each
 * followed by a blank; valid until the next call on the thread. */
ORV2_CALL int32_t orv2_testing_show_form(const char** events);

/* The boxes: 0 plain, 1 critical, 2 critical with a failure, 3 of a trapped
 * routine that a failure 11 stopped. Failure 5 for any other. */
ORV2_CALL int32_t orv2_testing_error_box(int32_t which, const char* text);

/* Lets waiting events be handled. */
ORV2_CALL int32_t orv2_testing_yield(void);

/* ---- Memory -------------------------------------------------------------- */

/* On this thread `let_pass` allocations of the library succeed and the one after is
 * refused, once; below 0 none is. Tells whether one was refused since the last time. */
ORV2_CALL int32_t orv2_testing_refuse_allocation(int32_t let_pass);

/* Of all threads, the library's allocations that are not given back yet. */
ORV2_CALL int32_t orv2_testing_allocations_in_use(void);

#ifdef __cplusplus
}
#endif

#endif /* ORV2_GEO_TESTS_SUPPORT_TESTING_H */
