/* Calls the run time's own _tzset. Without this function, the linker takes the _tzset of the
 * compiler's libraries, which also copies the time zone's variables and needs most of the start-up
 * code. */
extern void (*__imp__tzset)(void);

void _tzset(void);

void _tzset(void) {
    __imp__tzset();
}
