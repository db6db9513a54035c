import js from "@eslint/js";
import { defineConfig } from "eslint/config";
import ts from "typescript-eslint";

export default defineConfig({
    files: ["source/**/*.ts"],
    extends: [js.configs.recommended, ts.configs.strictTypeChecked],
    languageOptions: { parserOptions: { projectService: true } },
    linterOptions: { reportUnusedDisableDirectives: "error" },
    rules: {
        "no-restricted-properties": ["error", ...["innerHTML", "outerHTML", "insertAdjacentHTML", "write"].map((property) => ({ property, message: "texts stay texts" }))],
        // Numbers in texts are places and widths of drawings, and "() => act()" is no claim of a value.
        "@typescript-eslint/restrict-template-expressions": ["error", { allowNumber: true }],
        "@typescript-eslint/no-confusing-void-expression": ["error", { ignoreArrowShorthand: true }],
    },
});
