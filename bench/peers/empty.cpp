// What starting any program costs: the yardstick of a second start.
int main()
{
    return 0;
}
