/* What starting any process costs: the yardstick for hook mode. */
int main(void) { return 0; }
