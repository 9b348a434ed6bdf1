/* The run time's own _tzset. Without this the linker takes the compiler's in place of it, which
 * also copies the time zone's variables and brings in most of the start-up code. */
extern void (*__imp__tzset)(void);

void _tzset(void);

void _tzset(void) {
    __imp__tzset();
}
