/* Data of a thread at a place fixed when the library is loaded, as ROOM says how much. */
static __thread char room[ROOM] __attribute__((tls_model("initial-exec"), aligned(8)));

__attribute__((visibility("default"))) char* room_of_thread(void);
char* room_of_thread(void) { return room; }
