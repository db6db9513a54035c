// linked-only: links the libraries of the importer and does nothing, to see what starting them costs.
int main() {
    return 0;
}
