/* A client that its linker ties to the server's entry points: no registration, no manifest.
 * It needs no run-time, so that linkers of every make can be tried. */
typedef struct {
  unsigned long a;
  unsigned short b, c;
  unsigned char d[8];
} guid;

__declspec(dllimport) long __stdcall DllGetClassObject(const guid* of, const guid* as,
                                                       void** object);
__declspec(dllimport) long __stdcall DllCanUnloadNow(void);
__declspec(dllimport) __declspec(noreturn) void __stdcall ExitProcess(unsigned int status);

struct unknown;
struct unknown_table {
  long(__stdcall* query)(struct unknown*, const guid*, void**);
  unsigned long(__stdcall* reference)(struct unknown*);
  unsigned long(__stdcall* release)(struct unknown*);
};
struct unknown {
  const struct unknown_table* table;
};

static const guid class_factory = {1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
static const guid algorithms = ALGORITHMS;

void start(void) {
  void* factory = 0;
  if (DllCanUnloadNow() != 0) ExitProcess(1);
  if (DllGetClassObject(&algorithms, &class_factory, &factory) != 0) ExitProcess(2);
  ((struct unknown*)factory)->table->release(factory);
  ExitProcess(DllCanUnloadNow() == 0 ? 42 : 3);
}
