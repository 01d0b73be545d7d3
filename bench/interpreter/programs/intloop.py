# A million int additions with a remainder: the cost of a loop pass.
def main():
    total = 0
    for i in range(1000000):
        total = total + i % 7
    print(total)


main()
