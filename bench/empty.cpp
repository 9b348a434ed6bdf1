// What starting and ending any program costs.
int main() {}
