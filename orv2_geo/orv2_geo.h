/* orv2_geo.h: the library for C hosts, and for every language that calls C.
 *
 * A function answers with a status: 0, or the number of a failure whose words
 * orv2_last_failure gives; orv2_class_count and orv2_version alone answer with
 * what they are asked for. Results come by pointer and are written only when the status is 0.
 * Handles are numbers: one that is wrong, stale or of another kind is failure 5, and so is a null
 * pointer where something is needed; 0 where an object is needed is 91. Names of classes and
 * members compare without regard to case. char strings are UTF-8 and end in a zero; a string that
 * the library hands out is valid until the next call on the same thread, unless said otherwise.
 *
 * A handle belongs to the thread that made it: a call from another thread is
 * refused with 5 before anything runs. Releasing is allowed everywhere; what
 * another thread released ends when the owner next makes a handle.
 */
#ifndef ORV2_GEO_H
#define ORV2_GEO_H

#include <stddef.h>
#include <stdint.h>

#include "orv2_geo/version.h"

#if defined(_WIN32)
#define ORV2_CALL __declspec(dllexport)
#else
#define ORV2_CALL __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The version of the library in use, as ORV2_VERSION has that of this header. */
ORV2_CALL int32_t orv2_version(void);

/* ---- Values ------------------------------------------------------------ */

/* The types of the interface. ORV2_BYREF is added to a tag when the value
 * points at the host's own variable. */
enum {
  ORV2_NONE = 0,
  ORV2_I16 = 1,
  ORV2_I32 = 2,
  ORV2_F32 = 3,
  ORV2_F64 = 4,
  ORV2_BOOL = 5, /* 16 bits: -1 true, 0 false; every non-zero pattern is true */
  ORV2_TEXT = 6,
  ORV2_OBJECT = 7,
  ORV2_VARIANT = 8, /* only as the declared type of a result */
  ORV2_DOUBLE_ARRAY = 9,
  ORV2_SINGLE_ARRAY = 10,
  ORV2_LONG_ARRAY = 11,
  ORV2_SHORT_ARRAY = 12,
  ORV2_STRING_ARRAY = 13,
  ORV2_OMITTED = 14, /* an optional argument left out */
  ORV2_UTF8 = 15,    /* a text by value, as a char string */
  ORV2_BYREF = 0x100
};

/* An object, an array or a text variable of the library. 0 is none. */
typedef uint64_t orv2_handle;

/* One argument or answer.
 *   tag                        field
 *   ORV2_I16 .. ORV2_BOOL      i16, i32, f32, f64, boolean: by value
 *   the same | ORV2_BYREF      pointer: the host's variable, read and written
 *   ORV2_UTF8                  utf8: a text by value
 *   ORV2_TEXT                  handle: a text variable's present content
 *   ORV2_TEXT | ORV2_BYREF     handle: that text variable itself
 *   ORV2_OBJECT                handle: an object, or 0 for none
 *   ORV2_OBJECT | ORV2_BYREF   pointer: the host's variable that holds a handle;
 *                              never written, and read anew at each use: another
 *                              object put there in the middle of a call counts
 *                              from then on, none (0) is 91, a wrong handle 5
 *   ORV2_..._ARRAY | BYREF     handle: the array (without ORV2_BYREF the same)
 * The same variable or handle given twice is one variable. */
typedef struct orv2_value {
  uint16_t tag;
  union {
    double f64;
    float f32;
    int32_t i32;
    int16_t i16;
    int16_t boolean;
    orv2_handle handle;
    const char* utf8;
    void* pointer;
  } as;
} orv2_value;

/* ---- Failures ---------------------------------------------------------- */

typedef struct orv2_failure {
  int32_t number;
  const char* description;
  const char* source; /* "Orv2_Geo.cgeo_Algorismos", or a host object's own */
} orv2_failure;

/* The failure of the last call on this thread that had one. The strings are
 * valid until the next failing call on this thread. Failure 5, and nothing is
 * remembered of it, for a null pointer. */
ORV2_CALL int32_t orv2_last_failure(orv2_failure* failure);

/* Every number that the library itself raises: index from 0. Failure 9 past
 * the end. The description is valid for ever. */
ORV2_CALL int32_t orv2_failure_at(size_t index, int32_t* number, const char** description);

/* ---- The catalogue ----------------------------------------------------- */

typedef struct orv2_class_info {
  const char* name;            /* "cgeo_Algorismos" */
  const char* registered_name; /* "Orv2_Geo.cgeo_Algorismos" */
  size_t member_count;
} orv2_class_info;

enum { ORV2_METHOD = 0, ORV2_PROPERTY_READ = 1, ORV2_PROPERTY_WRITE = 2, ORV2_ANY = 3 };

typedef struct orv2_member_info {
  const char* name;
  int32_t kind;    /* ORV2_METHOD, ORV2_PROPERTY_READ, ORV2_PROPERTY_WRITE */
  uint16_t result; /* ORV2_NONE when there is no answer */
  size_t parameter_count;
} orv2_member_info;

typedef struct orv2_parameter_info {
  const char* name;
  uint16_t type; /* | ORV2_BYREF when by reference */
  int16_t optional;
  int16_t has_default; /* else an optional one left out is zero */
  int32_t default_value;
} orv2_parameter_info;

/* What a member may do with a parameter by reference. */
enum {
  ORV2_READ = 0,
  ORV2_WRITTEN = 1,
  ORV2_RESIZED = 2 /* an array that may get other bounds */
};

/* Classes, members and parameters in interface order, all from 0. Their
 * strings are valid for ever. Failure 9 past the end. */
ORV2_CALL size_t orv2_class_count(void);
ORV2_CALL int32_t orv2_class_at(size_t index, orv2_class_info* info);
ORV2_CALL int32_t orv2_member_at(size_t class_index, size_t position, orv2_member_info* info);
ORV2_CALL int32_t orv2_parameter_at(size_t class_index, size_t position, size_t parameter,
                                    orv2_parameter_info* info);
/* ORV2_READ, ORV2_WRITTEN or ORV2_RESIZED. */
ORV2_CALL int32_t orv2_parameter_use(size_t class_index, size_t position, size_t parameter,
                                     int32_t* use);

/* ---- Objects ----------------------------------------------------------- */

/* A new object of the class "Orv2_Geo.cgeo_Algorismos" or the like, with one
 * reference. Failure 429 for an unknown name. */
ORV2_CALL int32_t orv2_create(const char* registered_name, orv2_handle* object);

/* One reference more. */
ORV2_CALL int32_t orv2_reference(orv2_handle object);

/* One reference less; with the last the object ends, or, in the middle of one
 * of its calls, when that call ends. Releasing 0 does nothing. */
ORV2_CALL int32_t orv2_release(orv2_handle object);

/* The class of the object: its index in the catalogue. */
ORV2_CALL int32_t orv2_class_of(orv2_handle object, size_t* class_index);

/* The position of a member; `kind` tells which side of a property is meant,
 * ORV2_ANY takes a method or the read side. Failure 438. */
ORV2_CALL int32_t orv2_find_member(orv2_handle object, const char* name, int32_t kind,
                                   size_t* position);

/* Calls the member at `position`. `result` may be null; a member without an
 * answer gives ORV2_NONE there, a variant answer the tag of what it holds.
 * Failures: 438 position or name unknown; 450 too many arguments; 449 a
 * required one left out; 13 a type that cannot be converted, or an unknown tag;
 * 6 a converted number out of range; else the member's own. */
ORV2_CALL int32_t orv2_call(orv2_handle object, size_t position, const orv2_value* arguments,
                            size_t count, orv2_value* result);

/* The same by name; a property is read without an argument, written with one. */
ORV2_CALL int32_t orv2_call_name(orv2_handle object, const char* name, const orv2_value* arguments,
                                 size_t count, orv2_value* result);

/* A parameter's values for many calls: that of row r lies `step` bytes times r behind
 * `data`, and is of the parameter's own type, a number or a flag. A member that writes
 * the parameter writes there. With a null `data` the argument is the same in each row. */
typedef struct orv2_column {
  void* data;
  size_t step;
} orv2_column;

/* Calls the member at `position` once a row, as orv2_call would with the arguments of
 * that row. `columns` has `count` entries, or is null. `results` is null, or takes the
 * answers one behind the other in the member's own type (a variant's as double; 0 for a row that
 * fails). `failures` is null: then the first row that fails ends the call with its
 * failure; or it takes each row's failure number, 0 for none. `done`, which may be null,
 * becomes the number of rows that were called without one or noted. Failures, besides
 * those of the rows: 13 for a column of a parameter that is no number or flag, and for
 * results of a member that has none. */
ORV2_CALL int32_t orv2_call_rows(orv2_handle object, size_t position, const orv2_value* arguments,
                                 const orv2_column* columns, size_t count, size_t rows,
                                 void* results, int32_t* failures, size_t* done);

/* ---- Arrays ------------------------------------------------------------ */

typedef struct orv2_array_info {
  uint16_t type;       /* ORV2_DOUBLE_ARRAY .. ORV2_STRING_ARRAY */
  uint16_t dimensions; /* 0 when unallocated */
  int16_t allocated;
  int16_t locked;
  int32_t lower;  /* of the first dimension; 0 when unallocated */
  uint32_t count; /* elements; 0 when unallocated */
} orv2_array_info;

/* An unallocated array. */
ORV2_CALL int32_t orv2_array_new(uint16_t type, orv2_handle* array);

/* An array of `count` zeros (empty texts) from `lower`, with a dimension count
 * that is 1 for every array whose elements can be reached. */
ORV2_CALL int32_t orv2_array_make(uint16_t type, int32_t lower, uint32_t count, uint16_t dimensions,
                                  orv2_handle* array);

/* Resizes a host's buffer to `count` elements, the kept ones at their places in
 * the new index range and all others zero, and answers with its address in
 * `data`. A status other than 0 is the failure of the call that asked. */
typedef int32_t (*orv2_resize)(void* context, int32_t old_lower, uint32_t old_count, int32_t lower,
                               uint32_t count, int16_t keep, void** data);

/* An array over the host's own buffer of numbers, worked in place. Without
 * `resize` its size is fixed (failure 10, also where a routine would leave the
 * array unallocated; a buffer with `resize` is then asked for 0 elements). The
 * buffer must live as long as the array. Failure 5 for an array of texts. */
ORV2_CALL int32_t orv2_array_adopt(uint16_t type, void* data, int32_t lower, uint32_t count,
                                   orv2_resize resize, void* context, orv2_handle* array);

/* The same with any shape of which `shape` tells: allocated (0: the array begins
 * without elements and bounds), dimensions, lower and count. `resize`, which is
 * needed, is also asked for 0 elements, with a null `data`, where a routine leaves
 * the array unallocated. */
ORV2_CALL int32_t orv2_array_host(const orv2_array_info* shape, void* data, orv2_resize resize,
                                  void* context, orv2_handle* array);

/* Releasing an array, or a text variable, with orv2_release frees it; an array
 * in use by a call lives until the call ends. */
ORV2_CALL int32_t orv2_array_describe(orv2_handle array, orv2_array_info* info);

/* The bounds of the first dimension. Failure 9 when unallocated. */
ORV2_CALL int32_t orv2_array_bounds(orv2_handle array, int32_t* lower, int32_t* upper);

/* The elements of an array of numbers, valid until the array is resized or
 * freed; null when it has none. Failure 5 for an array of texts. */
ORV2_CALL int32_t orv2_array_data(orv2_handle array, void** data);

/* New bounds, with or without keeping the elements. Failures: 9 when upper is
 * below lower; 10 locked or fixed; 7 no memory. */
ORV2_CALL int32_t orv2_array_resize(orv2_handle array, int32_t lower, int32_t upper, int16_t keep);

/* A locked array cannot be resized: lock it while one of its elements is
 * handed in by reference. */
ORV2_CALL int32_t orv2_array_lock(orv2_handle array);
ORV2_CALL int32_t orv2_array_unlock(orv2_handle array);

/* One text of an array of texts, in 16-bit units. Failure 9. `units` is valid
 * until the element is written or the array freed. */
ORV2_CALL int32_t orv2_array_get_text(orv2_handle array, int32_t index, const uint16_t** units,
                                      size_t* count);
ORV2_CALL int32_t orv2_array_set_text(orv2_handle array, int32_t index, const uint16_t* units,
                                      size_t count);

/* ---- Texts ------------------------------------------------------------- */

/* A text variable with this content; `units` may be null when count is 0. */
ORV2_CALL int32_t orv2_text_new(const uint16_t* units, size_t count, orv2_handle* text);
ORV2_CALL int32_t orv2_text_set(orv2_handle text, const uint16_t* units, size_t count);
/* Valid until the text is written or freed. */
ORV2_CALL int32_t orv2_text_get(orv2_handle text, const uint16_t** units, size_t* count);

/* The number that a text is read as where one is handed in for a number: with the
 * decimal sign of the locale. Failure 13 when it is none. */
ORV2_CALL int32_t orv2_number_of_text(const uint16_t* units, size_t count, double* value);

/* ---- Host objects ------------------------------------------------------ */

/* A host's own object, reached by name. The values handed to the callbacks are
 * the library's: a by-reference one points at the library's variable, which the
 * callback may write. A callback answers with 0, or with a failure's number
 * after naming it with orv2_set_failure (without it the number alone travels).
 * `release` is called once, when the library no longer needs the object, and not
 * at all for an object still held when its thread ends. */
typedef struct orv2_host_object {
  size_t size; /* sizeof(orv2_host_object) */
  int32_t (*set_property)(void* context, const char* name, const orv2_value* value);
  int32_t (*call)(void* context, const char* name, const orv2_value* arguments, size_t count,
                  orv2_value* result);
  void (*release)(void* context);
} orv2_host_object;

/* A handle for a host's object. A callback that is null answers 438. */
ORV2_CALL int32_t orv2_host_object_new(const orv2_host_object* callbacks, void* context,
                                       orv2_handle* object);

/* The failure that the callback on its way out is about to answer with. */
ORV2_CALL int32_t orv2_set_failure(int32_t number, const char* description, const char* source);

/* ---- User interface ---------------------------------------------------- */

/* A form on its way through show_modal; valid until that callback returns. */
typedef struct orv2_form orv2_form;

/* What shows boxes and forms on this thread in place of the system. A callback
 * answers with 0 or a failure's number, as a host object's. One that is null leaves
 * its part to the system; while the system shows a form, boxes are the system's too. */
typedef struct orv2_user_interface {
  size_t size;   /* sizeof(orv2_user_interface) */
  void* context; /* handed to every callback */
  /* Shows the text with an OK button and returns when it is dismissed. flags: 0,
   * or 16 for the critical icon. caption: null for the default one. */
  int32_t (*error_box)(void* context, const char* text, int32_t flags, const char* caption);
  /* Shows the form and reports the user's actions by the functions below until
   * it is no longer open. A form left open on return is cancelled. A failure of
   * the routine behind an event closes the form; the call that showed it fails
   * with it, whatever is answered here. */
  int32_t (*show_modal)(void* context, orv2_form* form);
  int32_t (*handle_events)(void* context);
} orv2_user_interface;

/* Installs the callbacks (copied) on this thread; null: the system's again. */
ORV2_CALL int32_t orv2_set_user_interface(const orv2_user_interface* callbacks);

/* Has boxes of this thread written on standard error and forms left as their cancel
 * button would, whether there is a screen or not. */
ORV2_CALL int32_t orv2_set_console_interface(void);

/* Whether callbacks or the console are installed on this thread. */
ORV2_CALL int32_t orv2_has_user_interface(int16_t* installed);

/* In the middle of error_box: the failure that a routine trapped and that the box
 * tells of. Failure 5, and nothing is remembered of it, when the box tells of none.
 * The strings are valid until the box is dismissed. */
ORV2_CALL int32_t orv2_trapped_failure(orv2_failure* failure);

/* The host's window over which the boxes and forms of this thread appear and
 * stay: its native number, such as an X11 Window; 0 takes it back. Without it, or
 * when it is gone, the host's active window is sought by the process's number
 * (_NET_WM_PID). It has no effect on a host's own callbacks. */
ORV2_CALL int32_t orv2_set_owner_window(uint64_t window);

enum {
  ORV2_LABEL = 0,
  ORV2_TEXT_BOX = 1,
  ORV2_CHECK_BOX = 2,
  ORV2_OPTION_BUTTON = 3,
  ORV2_BUTTON = 4,
  ORV2_FRAME = 5,
  ORV2_PROGRESS_BAR = 6,
  ORV2_GRID = 7
};

typedef struct orv2_form_info {
  const char* name;
  const char* caption;
  int32_t width; /* client area, twips */
  int32_t height;
  int16_t open; /* still on the screen */
  size_t control_count;
} orv2_form_info;

typedef struct orv2_control_info {
  const char* name; /* a control array's member: "Opt3D(1)" */
  int32_t kind;
  int32_t left; /* twips; inside a frame relative to it */
  int32_t top;
  int32_t width;
  int32_t height;
  int32_t tab_index;
  const char* text;      /* caption or content */
  const char* container; /* a frame's name; empty: the form */
  int16_t visible;
  int16_t enabled;
  int16_t is_default; /* answers to Enter */
  int16_t is_cancel;  /* answers to Escape */
  double value;       /* non-zero: ticked or selected; a progress bar's position */
  double min;
  double max;
} orv2_control_info;

typedef struct orv2_grid_info {
  const char* format_string;
  int32_t rows;
  int32_t cols;
  int32_t fixed_rows;
  int32_t fixed_cols;
} orv2_grid_info;

/* How a form is meant to look, for a driver that draws it: what its window has,
 * and of a control or a grid what the structures above do not tell. */

enum { ORV2_CENTRE_OF_OWNER = 0, ORV2_CENTRE_OF_SCREEN = 1 };

typedef struct orv2_form_frame {
  int32_t start; /* ORV2_CENTRE_OF_OWNER, ORV2_CENTRE_OF_SCREEN */
  int32_t left;  /* of the design, twips; where it appears is told by start */
  int32_t top;
  int16_t tool_window; /* a narrow title bar */
  int16_t resizable;
  int16_t minimise_box;
  int16_t maximise_box;
  int16_t in_task_bar;
} orv2_form_frame;

typedef struct orv2_control_look {
  int32_t alignment;    /* of a label's text: 1 left, 4 centre, 7 right */
  int32_t background;   /* 0xRRGGBB; -1: the form's own */
  int16_t sizes_itself; /* a label as wide as its text, which holds its aligned edge */
} orv2_control_look;

typedef struct orv2_grid_font {
  const char* name;
  double points;
  int32_t weight; /* 400 is normal */
} orv2_grid_font;

/* The strings are valid until the next call on the same form. Controls are
 * numbered from 0. Failure 9 past the end, 438 for an unknown name or a control
 * that is no grid. */
ORV2_CALL int32_t orv2_form_describe(orv2_form* form, orv2_form_info* info);
ORV2_CALL int32_t orv2_form_control(orv2_form* form, size_t index, orv2_control_info* info);
ORV2_CALL int32_t orv2_form_grid(orv2_form* form, size_t index, orv2_grid_info* info);
ORV2_CALL int32_t orv2_form_describe_frame(orv2_form* form, orv2_form_frame* frame);
ORV2_CALL int32_t orv2_form_look(orv2_form* form, size_t index, orv2_control_look* look);
ORV2_CALL int32_t orv2_form_font(orv2_form* form, size_t index, orv2_grid_font* font);
ORV2_CALL int32_t orv2_form_alignment(orv2_form* form, size_t index, int32_t col,
                                      int32_t* alignment); /* 1 left, 4 centre, 7 right */
ORV2_CALL int32_t orv2_form_cell(orv2_form* form, size_t index, int32_t row, int32_t col,
                                 const char** text);

/* The control that has the focus, empty when none has: at first the first in
 * tab order (tab_index) that is visible and enabled and no label, frame or
 * progress bar. It stays there until orv2_form_set_focus moves it. */
ORV2_CALL int32_t orv2_form_focus(orv2_form* form, const char** name);

/* The user's actions. They act only on what is visible and enabled, as on a
 * real screen, and otherwise do nothing. Enter presses the default button; where
 * that cannot act, the button in focus; on a grid of a form without a default
 * button, the first button in tab order. Failures: 438 for an unknown name, and
 * those of the routine behind the event, by which the form is closed. */
ORV2_CALL int32_t orv2_form_click(orv2_form* form, const char* name);
ORV2_CALL int32_t orv2_form_select(orv2_form* form, const char* name);
ORV2_CALL int32_t orv2_form_set_text(orv2_form* form, const char* name, const char* text);
ORV2_CALL int32_t orv2_form_set_focus(orv2_form* form, const char* name);
ORV2_CALL int32_t orv2_form_press_enter(orv2_form* form);
ORV2_CALL int32_t orv2_form_press_escape(orv2_form* form);
ORV2_CALL int32_t orv2_form_close(orv2_form* form); /* the title bar's box */

#ifdef __cplusplus
}
#endif

#endif /* ORV2_GEO_H */
