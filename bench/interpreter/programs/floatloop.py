# A million float updates of a first-order filter.
def main():
    y = 0.0
    a = 0.999
    for i in range(1000000):
        y = a * y + 0.5 * i
    print(y)


main()
