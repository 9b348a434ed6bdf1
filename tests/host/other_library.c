/* A library in which the host finds none of the functions that it looks for. */
int SomethingElse(void);

int SomethingElse(void) {
    return 0;
}
